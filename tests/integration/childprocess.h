#pragma once

#include <QProcess>

#include <csignal>
#include <sys/prctl.h>

namespace ts::pm::test {

/** A child that ends with its parent, also if that one crashes. */
class ChildProcess : public QProcess
{
protected:
    void setupChildProcess() override { ::prctl(PR_SET_PDEATHSIG, SIGKILL); }
};

} // namespace ts::pm::test
