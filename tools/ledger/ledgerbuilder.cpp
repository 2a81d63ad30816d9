#include "ledger/ledgerbuilder.h"

#include "ledger/packagestatement.h"
#include "ledger/shortened.h"

#include <TamselCrypto/JsonSignature>

#include <QJsonDocument>
#include <QtConcurrentMap>

namespace ts::ledger {

namespace {

// Singular and plural of a noun share one text.
QByteArray valueOf(const pm::LangString &string)
{
    const QByteArray singular = string.sg.toUtf8();
    return string.pl.isEmpty() ? singular : singular + '\0' + string.pl.toUtf8();
}

} // namespace

LedgerBuilder::LedgerBuilder(const Catalogue &catalogue, const IssuerCertificate &certificate,
                             const crypto::ed25519::PrivateKey &key, Problems &problems)
    : catalogue(catalogue)
    , certificate(certificate)
    , key(key)
    , problems(problems)
{
}

LedgerRecords LedgerBuilder::build()
{
    records.issuers.append(certificate.toRecord());
    listLanguages();
    for (const CatalogueKeyword &keyword : catalogue.keywords)
        addKeyword(keyword);
    for (const CataloguePackage &package : catalogue.packages)
        addPackage(package);
    for (const CatalogueLink &link : catalogue.links)
        addLink(link);
    sign();
    return records;
}

// A literal has a language, too: the one without a name.
void LedgerBuilder::listLanguages()
{
    for (const CatalogueKeyword &keyword : catalogue.keywords) {
        for (const pm::LangString &string : keyword.info.strings)
            languages.insert(string.language, 0);
    }
    for (auto language = languages.begin(); language != languages.end(); ++language) {
        language.value() = quint16(records.languages.size());
        records.languages.append(language.key().toUtf8());
    }
}

void LedgerBuilder::addKeyword(const CatalogueKeyword &keyword)
{
    nodes.insert(keyword.info.id, {quint32(records.keywords.size()), false});
    records.keywords.append(
        {quint8(keyword.info.type), keyword.info.id.toUtf8(), translations(keyword.info), keyword.origin});
}

QVector<TranslationRecord> LedgerBuilder::translations(const pm::KeywordInfo &keyword) const
{
    QMap<quint16, QVector<QByteArray>> values;
    for (const pm::LangString &string : keyword.strings)
        values[languages.value(string.language)].append(valueOf(string));
    QVector<TranslationRecord> result;
    for (auto value = values.begin(); value != values.end(); ++value)
        result.append({value.key(), value.value()});
    return result;
}

// Packages come sorted by type.
void LedgerBuilder::addPackage(const CataloguePackage &package)
{
    const QByteArray type = package.info.type.toUtf8();
    if (records.types.isEmpty() || records.types.constLast() != type)
        records.types.append(type);
    nodes.insert(package.info.id, {quint32(records.packages.size()), true});
    PackageRecord record;
    record.type = quint16(records.types.size() - 1);
    record.id = package.info.id.toUtf8();
    record.manifest = manifestText(package);
    for (const CatalogueFile &file : package.files)
        record.files.append({file.digest, file.name.toUtf8()});
    record.origin = package.origin;
    records.packages.append(record);
}

QByteArray LedgerBuilder::manifestText(const CataloguePackage &package)
{
    if (package.manifest.contains(QLatin1String("type")))
        problems.addWarning(package.origin, QStringLiteral("the manifest's key 'type' is not covered by the "
                                                           "signature"));
    const QByteArray text = crypto::JsonSignature::toByteArray(package.manifest);
    const QJsonObject reread = QJsonDocument::fromJson(text).object();
    for (auto value = package.manifest.begin(); value != package.manifest.end(); ++value) {
        if (reread.value(value.key()) != value.value())
            problems.addError(package.origin,
                              QStringLiteral("the manifest's key '%1' has a number that JSON readers do not "
                                             "agree on; write it as a text")
                                  .arg(shortened(value.key())));
    }
    return text;
}

void LedgerBuilder::addLink(const CatalogueLink &link)
{
    const Node from = nodes.value(link.info.from);
    const Node to = nodes.value(link.info.to);
    const int flags =
        (from.isPackage ? LinkRecord::FromPackage : 0) | (to.isPackage ? LinkRecord::ToPackage : 0);
    records.links.append({quint8(link.info.type), quint8(flags), from.index, to.index});
}

void LedgerBuilder::sign()
{
    const auto signOne = [this](PackageRecord &package) {
        package.signature = key.sign(packageStatement(records.types.at(package.type), package));
    };
    QtConcurrent::blockingMap(records.packages, signOne);
}

} // namespace ts::ledger
