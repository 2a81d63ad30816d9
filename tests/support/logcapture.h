#pragma once

#include <QLoggingCategory>
#include <QMutex>
#include <QStringList>

namespace ts::pm::test {

/** Collects the log lines of one category, instead of printing them, for as long as it lives. Any thread may
 * log. */
class LogCapture
{
public:
    /** Captures \a category at all levels, debug lines included. One capture at a time. */
    explicit LogCapture(const QString &category)
    {
        QLoggingCategory::setFilterRules(category + QStringLiteral("=true"));
        const QMutexLocker locker(&mutex);
        captured = {category, {}, qInstallMessageHandler(capture)};
    }
    ~LogCapture()
    {
        qInstallMessageHandler(captured.previous);
        QLoggingCategory::setFilterRules(QString());
    }

    /** The lines so far, each with its level before it, as in "critical: Package install error 1 ...". */
    QStringList lines() const
    {
        const QMutexLocker locker(&mutex);
        return captured.lines;
    }

private:
    Q_DISABLE_COPY(LogCapture)

    static void capture(QtMsgType type, const QMessageLogContext &context, const QString &message)
    {
        static const char *const levels[] = {"debug", "warning", "critical", "fatal", "info"};
        const QMutexLocker locker(&mutex);
        if (captured.category == QLatin1String(context.category))
            captured.lines.append(QLatin1String(levels[type]) + QStringLiteral(": ") + message);
        else
            captured.previous(type, context, message);
    }

    struct Captured
    {
        QString category;
        QStringList lines;
        QtMessageHandler previous;
    };
    static inline QMutex mutex;
    static inline Captured captured;
};

} // namespace ts::pm::test
