#include "ledger/commands/commands.h"
#include "ledger/commands/signedcatalogue.h"
#include "ledger/console.h"
#include "ledger/counted.h"
#include "ledger/latin1.h"
#include "ledger/outputfile.h"

namespace ts::ledger {

int build(const QStringList &arguments)
{
    constexpr QLatin1String outputOption = latin1("output");
    CommandLine line(
        QStringLiteral("build"),
        QStringLiteral("Makes the signed ledger of a catalogue in the local directory format. The same "
                       "catalogue and key give the same bytes."));
    SignedCatalogue::addOptions(line);
    line.addOption(outputOption, QStringLiteral("FILE"), QStringLiteral("Where the ledger goes."));
    line.require({outputOption});
    if (const auto exitCode = line.parse(arguments))
        return *exitCode;

    Problems problems;
    const OutputFile output(line.value(outputOption));
    output.check(catalogueInputs(line) + SignedCatalogue::inputs(line), problems);
    SignedCatalogue result;
    result.catalogue = readCatalogue(line, problems);
    result.sign(line, problems);
    if (!Console::report(problems))
        return Failure;
    if (const QString error = output.write(result.ledger); !error.isNull())
        return fail(error);
    return conclude(QStringLiteral("%1: %2, %3, %4, %5")
                        .arg(line.value(outputOption),
                             counted(result.records.packages.size(), latin1("package")),
                             counted(result.records.keywords.size(), latin1("keyword")),
                             counted(result.records.links.size(), latin1("link")),
                             counted(result.ledger.size(), latin1("byte"))));
}

} // namespace ts::ledger
