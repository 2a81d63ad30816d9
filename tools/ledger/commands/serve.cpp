#include "ledger/commandline.h"
#include "ledger/commands/commands.h"
#include "ledger/console.h"
#include "ledger/latin1.h"
#include "ledger/treeserver.h"

#include <QFileInfo>

#include <csignal>

#include <pthread.h>

namespace ts::ledger {

namespace {

constexpr QLatin1String portOption = latin1("port");
constexpr QLatin1String verboseOption = latin1("verbose");

/** Signals that end the program, held back on this thread and all that it starts, until somebody waits. */
class EndSignals
{
public:
    EndSignals()
    {
        sigemptyset(&signals);
        sigaddset(&signals, SIGINT);
        sigaddset(&signals, SIGTERM);
        pthread_sigmask(SIG_BLOCK, &signals, nullptr);
    }

    /** The next one ends the program at once: clients that never finish can keep a server from its end. */
    void wait() const
    {
        int signal = 0;
        sigwait(&signals, &signal);
        pthread_sigmask(SIG_UNBLOCK, &signals, nullptr);
    }

private:
    sigset_t signals;
};

} // namespace

int serve(const QStringList &arguments)
{
    CommandLine line(
        QStringLiteral("serve"),
        QStringLiteral("Serves a published directory to this machine, for trying things out, until it is "
                       "interrupted. Prints the URL of the service."));
    line.addOption(portOption, QStringLiteral("NUMBER"),
                   QStringLiteral("The port; 0, as without it, for any free one."));
    line.addFlag(verboseOption, QStringLiteral("Print a line for each request."));
    line.addArgument(QStringLiteral("TREE"), QStringLiteral("Directory that was published into."));
    if (const auto exitCode = line.parse(arguments))
        return *exitCode;
    bool isNumber = true;
    const int port = line.isSet(portOption) ? line.value(portOption).toUShort(&isNumber) : 0;
    if (!isNumber)
        return line.refuse(QStringLiteral("'%1' is no port.").arg(line.value(portOption)));

    const ServerTree tree(line.argument(0));
    if (!QFileInfo::exists(tree.ledger()))
        return fail(QStringLiteral("%1: nothing has been published there").arg(line.argument(0)));
    const EndSignals endSignals;
    TreeServer server(tree);
    if (line.isSet(verboseOption))
        server.logRequests();
    const int bound = server.start(port);
    if (bound < 0)
        return fail(QStringLiteral("The port %1 is taken, or not for this user.").arg(port));
    if (!Console::print(QStringLiteral("http://127.0.0.1:%1/").arg(bound)))
        return Failure;
    endSignals.wait();
    return Success;
}

} // namespace ts::ledger
