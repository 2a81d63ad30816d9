#include "screenshotbatch.h"

#include "browseroptions.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QDir>
#include <QProcess>
#include <QTextStream>

#include <chrono>
#include <memory>
#include <vector>

namespace browser {

namespace {

constexpr std::chrono::minutes timeLimit{5};

using Processes = std::vector<std::unique_ptr<QProcess>>;

std::unique_ptr<QProcess> startVariant(const BrowserOptions &options, const QString &language, int scale)
{
    auto process = std::make_unique<QProcess>();
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("QT_SCALE_FACTOR"), QString::number(scale));
    process->setProcessEnvironment(environment);
    process->setProcessChannelMode(QProcess::ForwardedChannels);
    QStringList arguments = QCoreApplication::arguments().mid(1);
    arguments << QStringLiteral("--screenshot-variant") << QStringLiteral("%1x").arg(scale);
    if (options.language.isEmpty())
        arguments << QStringLiteral("--language") << language;
    process->start(QCoreApplication::applicationFilePath(), arguments);
    return process;
}

bool hasEnded(QProcess &process, const QDeadlineTimer &deadline)
{
    return process.waitForFinished(static_cast<int>(deadline.remainingTime()));
}

// QSemaphore::release() of Qt 5.15 can write once more where the semaphore was, after acquire() has returned.
// Qt paints larger areas in parallel, with such semaphores on the stack, so that one in some millions of
// fills spoils a stack. A process that died is worth a second try; one that gave up is not.
bool hasSucceeded(QProcess &process, const QDeadlineTimer &deadline)
{
    bool ended = hasEnded(process, deadline);
    if (ended && process.exitStatus() == QProcess::CrashExit) {
        QTextStream(stderr) << QStringLiteral(
            "tamsel-browser: A process crashed, its pictures are drawn again.\n");
        process.start();
        ended = hasEnded(process, deadline);
    }
    return ended && process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0;
}

} // namespace

int drawAllVariants(const BrowserOptions &options)
{
    if (!QDir().mkpath(options.screenshotDirectory)) {
        QTextStream(stderr)
            << QStringLiteral("tamsel-browser: Cannot create '%1'.\n").arg(options.screenshotDirectory);
        return 1;
    }
    const QStringList languages = options.language.isEmpty()
                                      ? QStringList{QStringLiteral("en"), QStringLiteral("de")}
                                      : QStringList{options.language};
    Processes processes;
    for (const QString &language : languages) {
        for (const int scale : {1, 2})
            processes.push_back(startVariant(options, language, scale));
    }
    const QDeadlineTimer deadline(timeLimit);
    bool complete = true;
    for (const auto &process : processes)
        complete = hasSucceeded(*process, deadline) && complete;
    return complete ? 0 : 1;
}

} // namespace browser
