#include "platform/foundation/WorkerPriority_p.h"

#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace ZQTPlatform {

namespace {
constexpr int workerNice = 10;
}

void lowerCurrentThreadPriority()
{
    // On Linux the nice value belongs to the thread named by its id; failure leaves it as it was.
    const auto thread = static_cast<id_t>(syscall(SYS_gettid));
    if (getpriority(PRIO_PROCESS, thread) < workerNice)
        setpriority(PRIO_PROCESS, thread, workerNice);
}

} // namespace ZQTPlatform
