#include "signedledger.h"

#include "files.h"
#include "ledger/ledgerwriter.h"

#include <TamselCrypto/JsonSignature>

#include <QCryptographicHash>
#include <QJsonDocument>
#include <QJsonObject>

namespace ts::pm::test {

using crypto::ed25519::PrivateKey;

namespace {

quint16 indexIn(QVector<QByteArray> &names, const QByteArray &name)
{
    if (!names.contains(name))
        names.append(name);
    return quint16(names.indexOf(name));
}

} // namespace

SignedLedger::SignedLedger(int issuers)
{
    rootKey = PrivateKey::fromPEM(readFile(QStringLiteral(DEVELOPMENT_KEY)));
    if (!rootKey)
        qFatal("Cannot read the development key");
    for (int i = 0; i < issuers; ++i) {
        issuerKeys.append(PrivateKey::generate());
        records.issuers.append({QByteArray(), "Issuer " + QByteArray::number(i), "Department", QByteArray()});
        sign(records.issuers.last(), issuerKeys.constLast().publicKey().toDER());
    }
}

quint32 SignedLedger::addPackage(const QByteArray &id, const QByteArray &type, const QByteArray &manifest,
                                 const Contents &files, quint16 issuer)
{
    ledger::PackageRecord package;
    package.type = indexIn(records.types, type);
    package.issuer = issuer;
    package.id = id;
    for (auto file = files.cbegin(); file != files.cend(); ++file)
        package.files.append({QCryptographicHash::hash(*file, QCryptographicHash::Sha224), file.key()});
    sign(package, manifest);
    records.packages.append(package);
    return quint32(records.packages.size() - 1);
}

quint32 SignedLedger::addKeyword(const QByteArray &id, quint8 type,
                                 const QMap<QByteArray, QVector<QByteArray>> &values)
{
    ledger::KeywordRecord keyword{type, id, {}, QString()};
    for (auto value = values.cbegin(); value != values.cend(); ++value)
        keyword.translations.append({indexIn(records.languages, value.key()), *value});
    records.keywords.append(keyword);
    return quint32(records.keywords.size() - 1);
}

void SignedLedger::sign(ledger::IssuerRecord &issuer, const QByteArray &publicKey) const
{
    issuer.publicKey = publicKey;
    issuer.signature = rootKey.sign(issuer.publicKey);
}

void SignedLedger::sign(ledger::PackageRecord &package, const QByteArray &manifest) const
{
    package.manifest = manifest;
    package.signature = issuerKeys.at(package.issuer).sign(statement(package));
}

QByteArray SignedLedger::statement(const ledger::PackageRecord &package) const
{
    QJsonObject manifest = QJsonDocument::fromJson(package.manifest).object();
    manifest.remove(QStringLiteral("type"));
    QJsonObject files;
    for (const ledger::FileRecord &file : package.files)
        files.insert(QString::fromUtf8(file.path), QString::fromLatin1(file.digest.toHex()));
    return crypto::JsonSignature::toByteArray(
        {{QStringLiteral("type"), QString::fromUtf8(records.types.at(package.type))},
         {QStringLiteral("manifest"), manifest},
         {QStringLiteral("files"), files}});
}

QByteArray SignedLedger::toByteArray() const
{
    const ledger::LedgerWriter writer(records);
    if (!writer.errors().isEmpty())
        qFatal("%s", qPrintable(writer.errors().join(QLatin1Char('\n'))));
    return writer.toByteArray();
}

} // namespace ts::pm::test
