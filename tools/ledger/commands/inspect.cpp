#include "ledger/commandline.h"
#include "ledger/commands/commands.h"
#include "ledger/commands/signedcatalogue.h"
#include "ledger/console.h"
#include "ledger/jsonprinter.h"
#include "ledger/latin1.h"
#include "ledger/ledgerreader.h"
#include "ledger/ledgerreport.h"
#include "ledger/ledgersource.h"
#include "ledger/shortened.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QSet>

namespace ts::ledger {

namespace {

constexpr QLatin1String filesOption = latin1("files");
constexpr QLatin1String jsonOption = latin1("json");

QJsonObject verdict(bool isGood, const QStringList &errors)
{
    return {{QStringLiteral("good"), isGood}, {QStringLiteral("errors"), QJsonArray::fromStringList(errors)}};
}

/** A ledger that is looked at: what "verify" and "inspect" have in common. */
class Looking
{
public:
    Looking(const QString &command, const QString &description)
        : line(command, description)
    {
        addRootKeyOption(line);
        line.addFlag(jsonOption, QStringLiteral("Print JSON."));
        line.addArgument(
            QStringLiteral("LEDGER"),
            QStringLiteral("A file, a directory that was published into, or the URL of a ledger, as in "
                           "https://example.org/api/v1/ledger."));
    }

    /** The exit code if that is all. */
    std::optional<int> look(const QStringList &arguments)
    {
        if (const auto exitCode = line.parse(arguments))
            return exitCode;
        QString error;
        Problems problems;
        const auto root = rootKey(line, problems);
        const LedgerSource source(line.argument(0));
        const QByteArray document = source.ledger(&error);
        if (!error.isNull())
            problems.errors.append(error);
        if (!Console::report(problems))
            return Failure;
        const auto read = LedgerReader::read(document, &error);
        if (!read)
            return refuse(QStringLiteral("%1: %2").arg(source.name(), error));
        records = *read;
        verification = LedgerVerification::of(records, root);
        return std::nullopt;
    }

    /** Reads every file that the ledger names, and adds an error for each that is missing or not itself. */
    void checkFiles()
    {
        const LedgerSource source(line.argument(0));
        QSet<QByteArray> seen;
        for (const PackageRecord &package : qAsConst(records.packages)) {
            for (const FileRecord &file : package.files) {
                if (seen.contains(file.digest))
                    continue;
                seen.insert(file.digest);
                checkFile(source, package, file);
            }
        }
    }

    bool isGood() const { return verification.problems.errors.isEmpty(); }

    CommandLine line;
    LedgerRecords records;
    LedgerVerification verification;

private:
    int refuse(const QString &error) const
    {
        if (line.isSet(jsonOption))
            return JsonPrinter::print(verdict(false, {error})) ? NotValid : Failure;
        Console::error(error);
        return NotValid;
    }

    void checkFile(const LedgerSource &source, const PackageRecord &package, const FileRecord &file)
    {
        QString error;
        const QByteArray digest = source.digestOf(QString::fromLatin1(file.digest.toHex()), &error);
        if (error.isNull() && digest != file.digest)
            error = QStringLiteral("the content is another one");
        if (!error.isNull())
            verification.problems.addError(
                QStringLiteral("package '%1', file '%2'").arg(shortened(package.id), shortened(file.path)),
                error);
    }
};

} // namespace

int inspect(const QStringList &arguments)
{
    Looking looking(QStringLiteral("inspect"),
                    QStringLiteral("Tells what is in a ledger, whether or not clients would believe it."));
    if (const auto exitCode = looking.look(arguments))
        return *exitCode;
    const LedgerReport report(looking.records, looking.verification);
    const bool printed = looking.line.isSet(jsonOption) ? report.printJson() : report.print();
    return printed ? Success : Failure;
}

int verify(const QStringList &arguments)
{
    Looking looking(
        QStringLiteral("verify"),
        QStringLiteral("Tells whether clients believe a ledger, and if not, whose signature is bad. The exit "
                       "code is 0 for a good ledger and 3 for a bad one."));
    looking.line.addFlag(filesOption, QStringLiteral("Also read every file that the ledger names."));
    if (const auto exitCode = looking.look(arguments))
        return *exitCode;
    if (looking.line.isSet(filesOption))
        looking.checkFiles();
    const Problems &problems = looking.verification.problems;
    const QString summary = LedgerReport(looking.records, looking.verification).summary();
    bool printed = true;
    if (looking.line.isSet(jsonOption)) {
        QJsonObject json = verdict(looking.isGood(), Console::abridged(problems.errors, problems.moreErrors));
        json.insert(QStringLiteral("warnings"),
                    QJsonArray::fromStringList(Console::abridged(problems.warnings, problems.moreWarnings)));
        printed = JsonPrinter::print(json);
    } else {
        Console::report(problems);
        printed = Console::print((looking.isGood() ? QStringLiteral("good: ") : QStringLiteral("not good: "))
                                 + summary);
    }
    if (!printed)
        return Failure;
    return looking.isGood() ? Success : NotValid;
}

} // namespace ts::ledger
