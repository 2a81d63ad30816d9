#include "ledger/packagestatement.h"

#include <TamselCrypto/JsonSignature>

#include <QJsonDocument>
#include <QJsonObject>
#include <QMap>

namespace ts::ledger {

namespace {

// Clients read texts up to a NUL.
QString toText(const QByteArray &bytes)
{
    return QString::fromUtf8(bytes.mid(0, bytes.indexOf('\0')));
}

// Of equal spellings the last one counts; of spellings that read as one path, the exact one, or else the
// first.
QJsonObject filesOf(const PackageRecord &package)
{
    QMap<QByteArray, QByteArray> digests;
    for (const FileRecord &file : package.files)
        digests.insert(file.path, file.digest);
    QJsonObject files;
    for (auto digest = digests.cbegin(); digest != digests.cend(); ++digest) {
        const QString path = toText(digest.key());
        if (!files.contains(path) || path.toUtf8() == digest.key())
            files.insert(path, QString::fromLatin1(digest->toHex()));
    }
    return files;
}

} // namespace

QByteArray packageStatement(const QByteArray &type, const PackageRecord &package)
{
    QJsonObject manifest = QJsonDocument::fromJson(package.manifest).object();
    manifest.remove(QStringLiteral("type"));
    return crypto::JsonSignature::toByteArray({{QStringLiteral("type"), toText(type)},
                                               {QStringLiteral("manifest"), manifest},
                                               {QStringLiteral("files"), filesOf(package)}});
}

} // namespace ts::ledger
