// The CPU time the calling thread has spent, for benches that time one thread's work without
// counting other work on the machine.
#pragma once

#include <ctime>

inline double threadCpuMs()
{
    timespec now{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return now.tv_sec * 1e3 + now.tv_nsec / 1e6;
}
