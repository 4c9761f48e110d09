#pragma once

#include <ctime>

namespace tamsy {

/// What this thread has worked, in seconds; other programs on a busy machine don't count.
inline double processorSeconds() {
    timespec time{};
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
}

} // namespace tamsy
