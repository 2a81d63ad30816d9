#include "ledger/packagestatement.h"

#include <TamselCrypto/JsonSignature>

#include <QJsonDocument>
#include <QJsonObject>

namespace ts::ledger {

namespace {

// Clients read texts up to a NUL.
QString toText(const QByteArray &bytes)
{
    return QString::fromUtf8(bytes.left(bytes.indexOf('\0')));
}

} // namespace

QByteArray packageStatement(const QByteArray &type, const PackageRecord &package)
{
    QJsonObject manifest = QJsonDocument::fromJson(package.manifest).object();
    manifest.remove(QStringLiteral("type"));
    QJsonObject files;
    for (const FileRecord &file : package.files)
        files.insert(toText(file.path), QString::fromLatin1(file.digest.toHex()));
    return crypto::JsonSignature::toByteArray({{QStringLiteral("type"), toText(type)},
                                               {QStringLiteral("manifest"), manifest},
                                               {QStringLiteral("files"), files}});
}

} // namespace ts::ledger
