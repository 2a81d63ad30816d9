#include "ledger/progress.h"

#include "ledger/console.h"

#include <QMutexLocker>

#include <cstdio>

namespace ts::ledger {

namespace {

constexpr int barWidth = 30;        // characters
constexpr int drawingInterval = 80; // milliseconds

} // namespace

Progress::Progress(const QString &title, qint64 total)
    : title(title)
    , total(total)
    , visible(total > 0 && Console::isErrorTerminal())
{
    sinceDrawn.start();
}

Progress::~Progress()
{
    if (visible)
        std::fputs("\r\x1b[K", stderr);
}

void Progress::advance(qint64 amount)
{
    if (!visible)
        return;
    const QMutexLocker locker(&mutex);
    done += amount;
    if (sinceDrawn.hasExpired(drawingInterval))
        draw();
}

void Progress::draw()
{
    sinceDrawn.restart();
    const double share = qBound(0.0, double(done) / double(total), 1.0);
    const QString bar =
        QString(int(share * barWidth), QLatin1Char('#')).leftJustified(barWidth, QLatin1Char('.'));
    std::fprintf(stderr, "\r%s [%s] %3d %%\x1b[K", qUtf8Printable(title), qUtf8Printable(bar),
                 int(share * 100));
    std::fflush(stderr);
}

} // namespace ts::ledger
