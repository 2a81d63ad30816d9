#include "ledger/commands/commands.h"
#include "ledger/commands/signedcatalogue.h"
#include "ledger/console.h"
#include "ledger/couchdatabase.h"
#include "ledger/couchdocument.h"
#include "ledger/counted.h"
#include "ledger/latin1.h"
#include "ledger/outputfile.h"

#include <QFile>

namespace ts::ledger {

namespace {

constexpr QLatin1String credentialsOption = latin1("credentials");
constexpr QLatin1String outputOption = latin1("output");
constexpr QLatin1String pruneOption = latin1("prune");
constexpr QLatin1String urlOption = latin1("url");

// What a POST to "_bulk_docs" takes, with a line for each document.
QString writeDocuments(const QVector<CouchDocument> &documents, const OutputFile &output)
{
    const auto fill = [&documents](QFileDevice &file) {
        QString error;
        const auto put = [&](const QByteArray &bytes) {
            if (error.isNull() && file.write(bytes) != bytes.size())
                error = FileCopy::failureOf(file);
        };
        put("{\"docs\":[\n");
        for (const CouchDocument &document : documents) {
            if (&document != &documents.constFirst())
                put(",\n");
            put(document.toJson(QString(), {}, &error));
            if (!error.isNull())
                break;
        }
        put("\n]}\n");
        return error;
    };
    return output.write(FileCopy::Filler(fill));
}

// The first line of the file, as in "user:password".
QByteArray readCredentials(const CommandLine &line, Problems &problems)
{
    if (!line.isSet(credentialsOption))
        return QByteArray();
    QFile file(line.value(credentialsOption));
    if (!file.open(QIODevice::ReadOnly)) {
        problems.addError(file.fileName(), file.errorString());
        return QByteArray();
    }
    const QByteArray credentials = file.readLine().trimmed();
    if (!credentials.contains(':'))
        problems.addError(file.fileName(), QStringLiteral("no line as in 'user:password'"));
    return credentials;
}

int upload(const QVector<CouchDocument> &documents, const CommandLine &line)
{
    Problems problems;
    const QByteArray credentials = readCredentials(line, problems);
    CouchDatabase database(QUrl(line.value(urlOption)), credentials);
    if (problems.errors.isEmpty() && !database.upload(documents, line.isSet(pruneOption)))
        problems.errors = database.errors();
    if (!Console::report(problems))
        return Failure;
    const CouchDatabase::Result result = database.result();
    return conclude(
        QStringLiteral("%1 written, %2 unchanged, %3 deleted, %4 left that are not in the catalogue")
            .arg(counted(result.written, latin1("document")))
            .arg(result.unchanged)
            .arg(result.deleted)
            .arg(result.vanished));
}

void addOptions(CommandLine &line)
{
    line.addOption(urlOption, QStringLiteral("URL"),
                   QStringLiteral("The database, as in http://localhost:5984/catalogue."));
    line.addOption(credentialsOption, QStringLiteral("FILE"),
                   QStringLiteral("A file with user and password for the database, as in user:password."));
    line.addFlag(pruneOption,
                 QStringLiteral("Delete packages, keywords and links of the database that are not in the "
                                "catalogue."));
    line.addOption(
        outputOption, QStringLiteral("FILE"),
        QStringLiteral(
            "Write the documents to FILE instead, for a POST to _bulk_docs of an empty database."));
    line.require({urlOption}, outputOption);
    line.exclude({credentialsOption, pruneOption}, outputOption);
    addCatalogue(line);
}

// The exit code if it is none of a database.
std::optional<int> checkUrl(const CommandLine &line)
{
    const QUrl url(line.value(urlOption));
    const bool isHttp = url.scheme() == QLatin1String("http") || url.scheme() == QLatin1String("https");
    if (line.isSet(urlOption) && (!isHttp || url.host().isEmpty()))
        return line.refuse(
            QStringLiteral("'%1' is no URL of a database.").arg(withoutLogin(line.value(urlOption))));
    return std::nullopt;
}

} // namespace

int couchdb(const QStringList &arguments)
{
    CommandLine line(
        QStringLiteral("couchdb"),
        QStringLiteral("Makes documents of CouchDB from a catalogue. They are uploaded to a database, with "
                       "the views by which applications read them, or written to a file. An upload "
                       "writes what is new or has changed, and can be repeated at any time."));
    addOptions(line);
    if (const auto exitCode = line.parse(arguments))
        return *exitCode;
    if (const auto exitCode = checkUrl(line))
        return *exitCode;

    Problems problems;
    const OutputFile output(line.value(outputOption));
    output.check(catalogueInputs(line), problems);
    const Catalogue catalogue = readCatalogue(line, problems);
    const QVector<CouchDocument> documents =
        problems.errors.isEmpty() ? couchDocuments(catalogue, problems) : QVector<CouchDocument>();
    if (!Console::report(problems))
        return Failure;
    if (line.isSet(urlOption))
        return upload(documents, line);
    if (const QString error = writeDocuments(documents, output); !error.isNull())
        return fail(error);
    return conclude(QStringLiteral("%1: %2").arg(line.value(outputOption),
                                                 counted(documents.size(), latin1("document"))));
}

} // namespace ts::ledger
