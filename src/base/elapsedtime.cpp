#include "base/elapsedtime.h"

#include <ctime>

namespace ellwynd {

ElapsedTime elapsedNow() {
    timespec now{};
    ::clock_gettime(CLOCK_BOOTTIME, &now);
    return std::chrono::seconds(now.tv_sec) + std::chrono::nanoseconds(now.tv_nsec);
}

} // namespace ellwynd
