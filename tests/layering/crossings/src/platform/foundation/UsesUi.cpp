// Deliberate crossings for the layering check's own test; never compiled.
#include "ZQTGlobal.h"
#include "platform/foundation/Log.h"
#include "platform/ui/View.h"
#include <QString>
#include <QLabel>
