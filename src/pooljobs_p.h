#pragma once

#include <QCoreApplication>
#include <QFutureWatcher>
#include <QRunnable>
#include <QThreadPool>
#include <QtConcurrentMap>
#include <QtConcurrentRun>

#include <algorithm>

namespace ts::pm {

// The global thread pool goes with the application object, which objects of the library may outlive. There is
// no event loop then that could tell of the end of a job, and jobs that are asked for are not started.

/** The global thread pool; null once the application object is going. Qt must not be asked for it then:
 * static objects of an application may outlive what Qt keeps it in. */
inline QThreadPool *jobPool()
{
    return QCoreApplication::closingDown() ? nullptr : QThreadPool::globalInstance();
}

/** Runs \a job on a thread of the pool. \a watcher tells of its end, and of that of no earlier one. */
template<typename Result, typename Job>
void runOnPool(QFutureWatcher<Result> *watcher, const Job &job)
{
    if (QThreadPool *pool = jobPool())
        watcher->setFuture(QtConcurrent::run(pool, job));
}

/** Runs \a job, which it takes over, on a thread of the pool. Nobody is told of its end. */
inline void runOnPool(QRunnable *job)
{
    if (QThreadPool *pool = jobPool())
        pool->start(job);
    else
        delete job;
}

/**
 * Calls copies of \a visit with all elements of \a range, on this thread and those of the pool that are free,
 * and waits. Without a pool this thread does it alone.
 */
template<typename Range, typename Visit>
void visitInParallel(const Range &range, const Visit &visit)
{
    // Not blockingMap(), which leaves all the work to the pool: a caller that runs on one of its threads
    // would wait for ever if it is full. Started like this, the calling thread works too.
    if (jobPool())
        QtConcurrent::startMap(range.cbegin(), range.cend(), visit).startBlocking();
    else
        std::for_each(range.cbegin(), range.cend(), visit);
}

} // namespace ts::pm
