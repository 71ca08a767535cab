// Deliberate crossings for the layering check's own test; never compiled.
#pragma once
#include "platform/capture/CaptureDevice.h"
