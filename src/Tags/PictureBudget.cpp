#include "Tags/PictureBudget.h"

#include <ctime>

namespace tamsy {

bool PictureBudget::hasTime() const {
    return now() - start_ < processorTime;
}

std::chrono::nanoseconds PictureBudget::now() {
    timespec time = {};
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
}

} // namespace tamsy
