#pragma once

#include <QElapsedTimer>
#include <QMutex>
#include <QString>

namespace ts::ledger {

/**
 * A line on the terminal that tells how far a long step has come, and that goes when the step is over. Draws
 * nothing if the error output is no terminal.
 *
 * Threads: advance() on any; made and destroyed on one.
 */
class Progress
{
public:
    /** \a total is in whatever unit advance() counts. */
    Progress(const QString &title, qint64 total);
    ~Progress();

    void advance(qint64 amount);

private:
    void draw();
    Q_DISABLE_COPY(Progress)

    const QString title;
    const qint64 total;
    const bool visible;
    QMutex mutex; // guards what follows
    qint64 done = 0;
    QElapsedTimer sinceDrawn;
};

} // namespace ts::ledger
