#include "server/mainthread_p.h"

#include <QCoreApplication>
#include <QSemaphore>
#include <QSharedPointer>
#include <QThread>

namespace ts::pm {

namespace {

constexpr int waitTime = 50; // milliseconds between two looks at whether to go on waiting

struct Answer
{
    QSemaphore given;
    QUrl url;
};

} // namespace

QUrl askMainThread(const std::function<QUrl()> &question)
{
    QCoreApplication *application = QCoreApplication::instance();
    // An application that is going has no instance any more, while it waits for its workers.
    if (!application && QCoreApplication::closingDown())
        return QUrl();
    if (!application || application->thread() == QThread::currentThread())
        return question();
    const auto answer = QSharedPointer<Answer>::create();
    const auto ask = [question, answer] {
        answer->url = question();
        answer->given.release();
    };
    QMetaObject::invokeMethod(application, ask, Qt::QueuedConnection);
    while (!answer->given.tryAcquire(1, waitTime)) {
        if (QCoreApplication::closingDown())
            return QUrl();
    }
    return answer->url;
}

} // namespace ts::pm
