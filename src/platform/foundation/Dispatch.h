// The main queue (the GUI thread's event loop), delayed main-queue work and the global queue
// (Qt's global thread pool).
#pragma once

#include "ZQTGlobal.h"

#include <functional>

namespace ZQTPlatform {

class ZQT_EXPORT Dispatch
{
public:
    // Queues work on the GUI thread; it runs on a later turn of the event loop.
    static void mainAsync(std::function<void()> work);
    // Runs work at once when called on the GUI thread, otherwise queues it there.
    static void onMain(std::function<void()> work);
    // Runs work on the GUI thread and returns when it has run: at once on the GUI thread,
    // otherwise by waiting for the GUI thread's event loop. Never call it while the GUI thread
    // waits for the calling thread.
    static void mainSync(std::function<void()> work);
    // Queues work on the GUI thread after a delay in seconds.
    static void mainAfter(double seconds, std::function<void()> work);
    // Runs work on the global thread pool.
    static void globalAsync(std::function<void()> work);
    static bool isMainThread();
};

} // namespace ZQTPlatform
