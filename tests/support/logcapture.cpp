#include "logcapture.h"

#include <QLoggingCategory>
#include <QMutex>
#include <QMutexLocker>

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

QString levelName(QtMsgType type)
{
    switch (type) {
    case QtDebugMsg:
        return QStringLiteral("debug");
    case QtInfoMsg:
        return QStringLiteral("info");
    case QtWarningMsg:
        return QStringLiteral("warning");
    case QtCriticalMsg:
        return QStringLiteral("critical");
    case QtFatalMsg:
        break;
    }
    return QStringLiteral("fatal");
}

void capture(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    QtMessageHandler previous = nullptr;
    {
        const QMutexLocker locker(&captured().mutex);
        if (captured().category == QLatin1String(context.category)) {
            captured().lines.append(QStringLiteral("%1: %2").arg(levelName(type), message));
            return;
        }
        previous = captured().previous;
    }
    previous(type, context, message);
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
