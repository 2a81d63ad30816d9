#include "fakeclock.h"

#include <QCoreApplication>

#include <sys/syscall.h>
#include <time.h>
#include <unistd.h>

namespace {

thread_local time_t passedSeconds = 0;

} // namespace

// Stands before the function of the C library for every library of the process.
extern "C" __attribute__((visibility("default"))) int clock_gettime(clockid_t clock, timespec *time) noexcept
{
    const long result = syscall(SYS_clock_gettime, clock, time);
    if (result == 0 && clock == CLOCK_MONOTONIC)
        time->tv_sec += passedSeconds;
    return int(result);
}

namespace ts::pm::test {

void FakeClock::advance(std::chrono::seconds time)
{
    passedSeconds += time_t(time.count());
    QCoreApplication::processEvents();
}

} // namespace ts::pm::test
