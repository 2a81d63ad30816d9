#pragma once

#include <QBasicTimer>

namespace ts::pm {

/**
 * Tells a source when to poll: at the first tick of its timer, and then each time that the interval has been
 * counted down to nothing. A tick is 2 seconds.
 *
 * Threads: repository thread only.
 */
class PollCountdown
{
public:
    /** \a interval in milliseconds. */
    explicit PollCountdown(int interval)
        : interval(interval)
    {
    }

    /** Lets \a source have timer events from now on. */
    void start(QObject *source) { timer.start(tick, source); }

    /** To be asked at every timer event of the source, once: sources have no other timer. */
    bool isDue()
    {
        const bool due = countdown < tick;
        countdown = due ? interval : countdown - tick;
        return due;
    }

private:
    static constexpr int tick = 2000; // milliseconds

    QBasicTimer timer;
    const int interval;
    int countdown = 0; // milliseconds
};

} // namespace ts::pm
