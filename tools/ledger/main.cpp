#include "ledger/commandline.h"
#include "ledger/commands/commands.h"
#include "ledger/console.h"

#include <QCoreApplication>
#include <QTextCodec>

namespace {

using namespace ts::ledger;

struct Command
{
    const char *name;
    const char *summary;
    int (*run)(const QStringList &arguments);
};

constexpr Command commands[] = {
    {"keygen", "make a key pair for a root or an issuer", &keygen},
    {"issue", "let an issuer sign packages", &issue},
    {"build", "make the signed ledger of a catalogue", &build},
    {"publish", "bring a catalogue into the directory of a web server", &publish},
    {"verify", "tell whether a ledger is good, and what is bad about it", &verify},
    {"inspect", "tell what is in a ledger", &inspect},
    {"couchdb", "bring a catalogue into a CouchDB database", &couchdb},
    {"serve", "serve a published directory on this machine, for trying things out", &serve},
};

QString helpText()
{
    QString text = QStringLiteral("Usage: tamsel-ledger COMMAND [options] ...\n"
                                  "Publishes catalogues of content packages.\n\nCommands:\n");
    for (const Command &command : commands)
        text += QStringLiteral("  %1 %2\n")
                    .arg(QLatin1String(command.name), -9)
                    .arg(QLatin1String(command.summary));
    return text
           + QStringLiteral(
               "\nOptions:\n"
               "  -h, --help     Print this help and exit; behind a command, that of the command.\n"
               "  -v, --version  Print the version and exit.\n\n"
               "Exit codes: 0 done; 1 failed, and nothing half-done is left; 2 the command line is not "
               "understood;\n3 verify: applications would not believe the ledger; inspect: it cannot be "
               "read.");
}

int run(const QStringList &arguments)
{
    const QString name = arguments.value(1);
    if (name == QLatin1String("--help") || name == QLatin1String("-h"))
        return conclude(helpText());
    if (name == QLatin1String("--version") || name == QLatin1String("-v"))
        return conclude(QStringLiteral("tamsel-ledger " TAMSEL_VERSION));
    for (const Command &command : commands) {
        if (name == QLatin1String(command.name))
            return command.run(arguments.mid(1));
    }
    Console::error(name.isNull() ? QStringLiteral("No command is given.")
                                 : QStringLiteral("There is no command '%1'.").arg(name));
    Console::hint(QStringLiteral("See 'tamsel-ledger --help'."));
    return UsageError;
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    // The same bytes in every locale: names of files are UTF-8 in a ledger, so they are here.
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("UTF-8"));
    return run(QCoreApplication::arguments());
}
