#include "ledger/ledgerreport.h"

#include "ledger/console.h"
#include "ledger/counted.h"
#include "ledger/jsonprinter.h"
#include "ledger/latin1.h"
#include "ledger/shortened.h"
#include "ledger/typenames.h"

#include <QCryptographicHash>
#include <QJsonArray>
#include <QJsonDocument>

namespace ts::ledger {

namespace {

constexpr int mostInTables = 80; // characters
// What records in JSON call others. No directory holds an id that is longer.
constexpr int mostInReferences = 255; // characters
constexpr int mostInTypes = 1000;     // characters; they are made of several names

QString toText(const QByteArray &bytes)
{
    return QString::fromUtf8(bytes);
}

QString goodOrBad(bool good)
{
    return good ? QStringLiteral("good") : QStringLiteral("BAD");
}

// What clients make of the signature to tell versions of a package apart.
QString revisionOf(const PackageRecord &package)
{
    return QString::fromLatin1(package.signature.left(24).toBase64());
}

QString fingerprintOf(const IssuerRecord &issuer)
{
    return QString::fromLatin1(
        QCryptographicHash::hash(issuer.publicKey, QCryptographicHash::Sha256).toHex());
}

QString displayOf(const QByteArray &value)
{
    return QString::fromUtf8(value.constData(), value.size()).replace(QChar::Null, QLatin1String(" / "));
}

template<typename Record, typename Function>
QJsonArray mapped(const QVector<Record> &records, Function function)
{
    QJsonArray result;
    for (const Record &record : records)
        result.append(function(record));
    return result;
}

} // namespace

LedgerReport::LedgerReport(const LedgerRecords &records, const LedgerVerification &verification)
    : records(records)
    , verification(verification)
{
}

// A literal's language, the one without a name, is none to be counted.
QString LedgerReport::summary() const
{
    const int languages = records.languages.size() - records.languages.count(QByteArray());
    return QStringLiteral("%1, %2 of %3, %4 in %5, %6")
        .arg(counted(records.issuers.size(), latin1("issuer")),
             counted(records.packages.size(), latin1("package")),
             counted(records.types.size(), latin1("type")),
             counted(records.keywords.size(), latin1("keyword")), counted(languages, latin1("language")),
             counted(records.links.size(), latin1("link")));
}

bool LedgerReport::print() const
{
    const auto part = [](const TextTable &table) { return Console::print(QString()) && table.print(); };
    return Console::print(summary()) && part(issuerTable()) && part(packageTable()) && part(keywordTable())
           && part(linkTable());
}

TextTable LedgerReport::issuerTable() const
{
    TextTable table({QStringLiteral("ISSUER"), QStringLiteral("SECOND NAME"), QStringLiteral("SIGNATURE"),
                     QStringLiteral("SHA-256 OF THE KEY")});
    for (int i = 0; i < records.issuers.size(); ++i) {
        const IssuerRecord &issuer = records.issuers.at(i);
        table.addRow({shortened(issuer.name), shortened(issuer.secondName),
                      goodOrBad(verification.issuers.at(i)), fingerprintOf(issuer)});
    }
    return table;
}

TextTable LedgerReport::packageTable() const
{
    TextTable table({QStringLiteral("TYPE"), QStringLiteral("PACKAGE"), QStringLiteral("FILES"),
                     QStringLiteral("SIGNATURE"), QStringLiteral("REVISION")});
    for (int i = 0; i < records.packages.size(); ++i) {
        const PackageRecord &package = records.packages.at(i);
        table.addRow({shortened(records.types.at(package.type)), shortened(package.id),
                      QString::number(package.files.size()), goodOrBad(verification.packages.at(i)),
                      revisionOf(package)});
    }
    return table;
}

TextTable LedgerReport::keywordTable() const
{
    TextTable table({QStringLiteral("KEYWORD"), QStringLiteral("KIND"), QStringLiteral("FIRST STRINGS")});
    for (const KeywordRecord &keyword : records.keywords) {
        QStringList strings;
        for (const TranslationRecord &translation : keyword.translations)
            strings.append(displayOf(translation.values.value(0)));
        table.addRow(
            {shortened(keyword.id), keywordTypeName(keyword.type), strings.join(QLatin1String(", "))});
    }
    return table;
}

TextTable LedgerReport::linkTable() const
{
    TextTable table({QStringLiteral("FROM"), QStringLiteral("LINK"), QStringLiteral("TO")});
    for (const LinkRecord &link : records.links)
        table.addRow({startOf(link, mostInTables), linkTypeName(link.type), endOf(link, mostInTables)});
    return table;
}

QString LedgerReport::startOf(const LinkRecord &link, int length) const
{
    return idOf(link.source, link.startsAtPackage(), length);
}

QString LedgerReport::endOf(const LinkRecord &link, int length) const
{
    return idOf(link.target, link.endsAtPackage(), length);
}

// A link can name what is not there.
QString LedgerReport::idOf(quint32 index, bool isPackage, int length) const
{
    const qint64 count = isPackage ? records.packages.size() : records.keywords.size();
    if (qint64(index) >= count)
        return QStringLiteral("?%1").arg(index);
    return shortened(isPackage ? records.packages.at(int(index)).id : records.keywords.at(int(index)).id,
                     length);
}

bool LedgerReport::printJson() const
{
    return JsonPrinter::print(
        {{QStringLiteral("issuers"), records.issuers.size(), [this](int i) { return issuerJson(i); }},
         {QStringLiteral("keywords"), records.keywords.size(), [this](int i) { return keywordJson(i); }},
         {QStringLiteral("languages"), records.languages.size(),
          [this](int i) { return toText(records.languages.at(i)); }},
         {QStringLiteral("links"), records.links.size(), [this](int i) { return linkJson(i); }},
         {QStringLiteral("packages"), records.packages.size(), [this](int i) { return packageJson(i); }}});
}

QJsonObject LedgerReport::issuerJson(int index) const
{
    const IssuerRecord &issuer = records.issuers.at(index);
    return {{QStringLiteral("name"), toText(issuer.name)},
            {QStringLiteral("secondName"), toText(issuer.secondName)},
            {QStringLiteral("keySha256"), fingerprintOf(issuer)},
            {QStringLiteral("signatureGood"), verification.issuers.at(index)}};
}

QJsonObject LedgerReport::keywordJson(int index) const
{
    const KeywordRecord &keyword = records.keywords.at(index);
    QJsonObject strings;
    for (const TranslationRecord &translation : keyword.translations) {
        const auto pieces = [](const QByteArray &value) {
            return QJsonValue(mapped(value.split('\0').toVector(), &toText));
        };
        strings.insert(shortened(records.languages.at(translation.language), mostInReferences),
                       mapped(translation.values, pieces));
    }
    return {{QStringLiteral("id"), toText(keyword.id)},
            {QStringLiteral("type"), keywordTypeName(keyword.type)},
            {QStringLiteral("strings"), strings}};
}

QJsonObject LedgerReport::packageJson(int index) const
{
    const PackageRecord &package = records.packages.at(index);
    QJsonObject files;
    for (const FileRecord &file : package.files)
        files.insert(toText(file.path), QString::fromLatin1(file.digest.toHex()));
    return {{QStringLiteral("id"), toText(package.id)},
            {QStringLiteral("type"), shortened(records.types.at(package.type), mostInTypes)},
            {QStringLiteral("issuer"), shortened(records.issuers.at(package.issuer).name, mostInReferences)},
            {QStringLiteral("revision"), revisionOf(package)},
            {QStringLiteral("manifest"), QJsonDocument::fromJson(package.manifest).object()},
            {QStringLiteral("files"), files},
            {QStringLiteral("signatureGood"), verification.packages.at(index)}};
}

QJsonObject LedgerReport::linkJson(int index) const
{
    const LinkRecord &link = records.links.at(index);
    return {{QStringLiteral("from"), startOf(link, mostInReferences)},
            {QStringLiteral("type"), linkTypeName(link.type)},
            {QStringLiteral("to"), endOf(link, mostInReferences)}};
}

} // namespace ts::ledger
