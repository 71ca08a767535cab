// Deliberate crossings for the layering check's own test; never compiled.
#include "Model/ZQTVINScanComponentConstants.h"
