// Background threads of the capture pipeline (barcode reading, preview drawing, the capture
// queue) run at a lower scheduling priority than the GUI thread, so that on a busy machine a
// waking GUI thread gets a core at once instead of waiting behind them.
#pragma once

#include "ZQTGlobal.h"

namespace ZQTPlatform {

// Lowers the calling thread's priority (Linux nice +10, this thread only). Harmless to repeat.
ZQT_EXPORT void lowerCurrentThreadPriority();

} // namespace ZQTPlatform
