#include "logcapture.h"

#include <QLoggingCategory>
#include <QMutex>

namespace ts::pm::test {

namespace {

struct Captured
{
    QMutex mutex;
    QString category;
    QStringList lines;
    QtMessageHandler previous = nullptr;
};

Captured &captured()
{
    static Captured instance;
    return instance;
}

void capture(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    static const char *const levels[] = {"debug", "warning", "critical", "fatal", "info"};
    const QMutexLocker locker(&captured().mutex);
    if (captured().category == QLatin1String(context.category))
        captured().lines.append(QLatin1String(levels[type]) + QStringLiteral(": ") + message);
    else
        captured().previous(type, context, message);
}

} // namespace

LogCapture::LogCapture(const QString &category)
{
    QLoggingCategory::setFilterRules(category + QStringLiteral("=true"));
    const QMutexLocker locker(&captured().mutex);
    captured().category = category;
    captured().lines.clear();
    captured().previous = qInstallMessageHandler(capture);
}

LogCapture::~LogCapture()
{
    qInstallMessageHandler(captured().previous);
    QLoggingCategory::setFilterRules(QString());
}

QStringList LogCapture::lines() const
{
    const QMutexLocker locker(&captured().mutex);
    return captured().lines;
}

} // namespace ts::pm::test
