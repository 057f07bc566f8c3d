#include "tests/monkey/controlledclock.h"

#include <ctime>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

constexpr long nanosecondsPerSecond = 1000000000;
constexpr long nanosecondsPerMillisecond = 1000000;

thread_local bool isTakenOver = false;
timespec now = {};

int readRealClock(clockid_t clock, timespec *time)
{
    return static_cast<int>(syscall(SYS_clock_gettime, clock, time));
}

} // namespace

// Replaces the C library's function for the executable and all its libraries.
extern "C" int clock_gettime(clockid_t clock, timespec *time) noexcept
{
    if (!isTakenOver || clock != CLOCK_MONOTONIC)
        return readRealClock(clock, time);
    *time = now;
    return 0;
}

namespace ControlledClock {

void takeOver()
{
    readRealClock(CLOCK_MONOTONIC, &now);
    isTakenOver = true;
}

void advance(std::chrono::milliseconds time)
{
    now.tv_sec += time.count() / 1000;
    now.tv_nsec += time.count() % 1000 * nanosecondsPerMillisecond;
    if (now.tv_nsec >= nanosecondsPerSecond) {
        ++now.tv_sec;
        now.tv_nsec -= nanosecondsPerSecond;
    }
}

std::chrono::milliseconds realTime()
{
    timespec time = {};
    readRealClock(CLOCK_MONOTONIC, &time);
    return std::chrono::seconds(time.tv_sec) +
           std::chrono::milliseconds(time.tv_nsec / nanosecondsPerMillisecond);
}

} // namespace ControlledClock
