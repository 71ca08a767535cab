// Deliberate crossings for the layering check's own test; never compiled.
#include "platform/ui/Font.h"
#include "Model/ZQTVINScanComponentConstants.h"
