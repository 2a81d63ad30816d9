#pragma once

#include <QProcess>

#include <csignal>
#include <sys/prctl.h>

namespace ts::pm::test {

/** A child that is killed with this object, and with its parent, also if that one crashes. */
class ChildProcess : public QProcess
{
public:
    ChildProcess() { setProcessChannelMode(ForwardedErrorChannel); }
    ~ChildProcess() override { end(); }

    void end()
    {
        kill();
        waitForFinished();
    }

    /** The next line of its output; empty if none comes in a minute. */
    QString nextLine()
    {
        while (!canReadLine() && waitForReadyRead(60000)) {
        }
        return QString::fromUtf8(readLine()).trimmed();
    }

protected:
    void setupChildProcess() override { ::prctl(PR_SET_PDEATHSIG, SIGKILL); }
};

} // namespace ts::pm::test
