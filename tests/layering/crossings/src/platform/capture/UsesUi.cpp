// Deliberate crossings for the layering check's own test; never compiled.
#include "platform/capture/CaptureSession.h"
#include "platform/ui/View.h"
#include <QtWidgets/QWidget>
