#include "ledger/commands/commands.h"
#include "ledger/commands/signedcatalogue.h"
#include "ledger/console.h"
#include "ledger/counted.h"
#include "ledger/latin1.h"
#include "ledger/publisher.h"

namespace ts::ledger {

namespace {

constexpr QLatin1String ledgerOption = latin1("ledger");
constexpr QLatin1String pruneOption = latin1("prune");
constexpr QLatin1String recheckOption = latin1("recheck");

int tell(const Publisher::Result &result)
{
    return conclude(QStringLiteral("%1 written, %2 kept, %3 removed; the ledger is %4")
                        .arg(counted(result.filesWritten, latin1("file")))
                        .arg(result.filesKept)
                        .arg(result.filesRemoved)
                        .arg(result.ledgerWritten ? QStringLiteral("new") : QStringLiteral("unchanged")));
}

void addOptions(CommandLine &line)
{
    SignedCatalogue::addOptions(line, ledgerOption);
    line.addOption(ledgerOption, QStringLiteral("FILE"),
                   QStringLiteral("Publish this ledger of the catalogue; no key is needed then."));
    line.addFlag(pruneOption,
                 QStringLiteral("Remove files that neither this ledger nor the one before it names."));
    line.addFlag(recheckOption,
                 QStringLiteral("Read the files that are there as well, and replace damaged ones."));
    line.addArgument(QStringLiteral("TREE"), QStringLiteral("Directory that is served; made if need be."));
}

} // namespace

int publish(const QStringList &arguments)
{
    CommandLine line(
        QStringLiteral("publish"),
        QStringLiteral(
            "Brings a catalogue into the directory of a web server. Its ledger is built and signed, or was "
            "before and is given with --ledger. Clients that read meanwhile see the old ledger or the new "
            "one, and in either case all of its files."));
    addOptions(line);
    if (const auto exitCode = line.parse(arguments))
        return *exitCode;

    Problems problems;
    SignedCatalogue result;
    result.catalogue = readCatalogue(line, problems);
    if (line.isSet(ledgerOption))
        result.takeLedger(line.value(ledgerOption), line, problems);
    else
        result.sign(line, problems);
    if (!Console::report(problems))
        return Failure;
    Publisher publisher(ServerTree(line.argument(1)), {line.isSet(recheckOption), line.isSet(pruneOption)});
    if (!publisher.publish(result.ledger, result.records, result.catalogue)) {
        problems = {publisher.errors(), {}};
        Console::report(problems);
        return Failure;
    }
    return tell(publisher.result());
}

} // namespace ts::ledger
