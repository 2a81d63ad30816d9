#pragma once

#include <chrono>

namespace ts::pm::test {

/**
 * Lets time pass without waiting: puts the monotonic clock forward, by which all timers and deadlines of Qt
 * go. Only the thread that calls it is concerned, so that the time limit of a test function still holds.
 */
class FakeClock
{
public:
    /** Timers that have come due by then are handled before this returns. */
    static void advance(std::chrono::seconds time);
};

} // namespace ts::pm::test
