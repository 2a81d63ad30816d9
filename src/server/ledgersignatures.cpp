#include "logging_p.h"
#include "server/ledgerformat_p.h"
#include "server/packagefiles_p.h"
#include "server/packageledger.h"
#include "server/rootkey_p.h"

#include <TamselCrypto/JsonSignature>
#include <TamselCrypto/PublicKey>

#include <QJsonDocument>
#include <QJsonObject>
#include <QStringList>
#include <QtConcurrent>

#include <algorithm>
#include <atomic>

namespace ts::pm {

namespace {

using crypto::ed25519::PublicKey;
using namespace ledgerformat;

QByteArray rawView(const Utf8String &string)
{
    return QByteArray::fromRawData(string.data, string.length);
}

/** Whether the 64 bytes at \a signature, which a tolerant read may have left null, sign \a message. */
bool isSignedBy(const PublicKey &key, const unsigned char *signature, const QByteArray &message)
{
    return signature
           && key.verify(QByteArray::fromRawData(reinterpret_cast<const char *>(signature), SignatureSize),
                         message);
}

QJsonObject signedManifest(const PackageEntry &package)
{
    QJsonObject manifest = QJsonDocument::fromJson(rawView(package.manifest)).object();
    manifest.remove(QStringLiteral("type"));
    return manifest;
}

QString hexadecimal(const unsigned char *digest)
{
    QString text(DigestSize * 2, Qt::Uninitialized);
    QChar *to = text.data();
    for (int i = 0; i < DigestSize; ++i) {
        *to++ = QLatin1Char("0123456789abcdef"[digest[i] >> 4]);
        *to++ = QLatin1Char("0123456789abcdef"[digest[i] & 0xf]);
    }
    return text;
}

QJsonObject signedFiles(const PackageEntry &package)
{
    QJsonObject members;
    const QVector<PackageFile> files = packageFiles(package);
    for (const PackageFile &file : files)
        members.insert(file.path, hexadecimal(file.digest));
    return members;
}

/** What the issuer of a package signs; null if it has no canonical form. */
QByteArray packageStatement(const PackageEntry &package, const QString &type)
{
    QJsonObject statement;
    statement.insert(QStringLiteral("type"), type);
    statement.insert(QStringLiteral("manifest"), signedManifest(package));
    statement.insert(QStringLiteral("files"), signedFiles(package));
    return crypto::JsonSignature::toByteArray(statement);
}

bool hasAllDigests(const PackageEntry &package)
{
    return std::find(package.files.cbegin(), package.files.cend(), nullptr) == package.files.cend();
}

/** Counts the packages whose signature is good; is copied for, and called from, several threads. */
class PackageVerifier
{
public:
    PackageVerifier(const QStringList &types, const QVector<PublicKey> &keys, std::atomic<int> *good)
        : types(types)
        , keys(keys)
        , good(good)
    {
    }

    void operator()(const PackageEntry &package) const
    {
        if (isGood(package))
            good->fetch_add(1, std::memory_order_relaxed);
    }

private:
    bool isGood(const PackageEntry &package) const
    {
        if (!hasAllDigests(package))
            return false;
        const QByteArray statement = packageStatement(package, types.at(package.typeIndex));
        return !statement.isNull() && isSignedBy(keys.at(package.issuerIndex), package.signature, statement);
    }

    QStringList types;
    QVector<PublicKey> keys;
    std::atomic<int> *good;
};

/** The key of an issuer whom the root key has signed; otherwise an unusable one, with the reason in the log.
 */
PublicKey verifiedKey(const IssuerEntry &issuer, const PublicKey &rootKey)
{
    const QByteArray der = rawView(issuer.publicKey);
    if (!isSignedBy(rootKey, issuer.signature, der)) {
        qCCritical(lcLedger) << "Failed to verify issuer signature of" << issuer.name.toString()
                             << issuer.secondName.toString();
        return {};
    }
    qCDebug(lcLedger) << "Issuer signature of" << issuer.name.toString() << issuer.secondName.toString()
                      << "is valid";
    const auto key = PublicKey::fromDER(der);
    if (!key) {
        qCCritical(lcLedger) << "Public key of" << issuer.name.toString() << issuer.secondName.toString()
                             << "is not valid";
    }
    return key;
}

void warnOfDevelopmentKey()
{
    if (!RootKeyIsForDevelopment)
        return;
    static const bool warned = [] {
        qCWarning(lcLedger)
            << "Ledgers are verified with the development root key, with which everybody can sign";
        return true;
    }();
    Q_UNUSED(warned)
}

} // namespace

bool PackageLedger::verifySignatures()
{
    const auto rootKey = PublicKey::fromPEM(QByteArray(RootKeyPem));
    QVector<PublicKey> keys;
    for (const IssuerEntry &issuer : qAsConst(issuers)) {
        keys.append(verifiedKey(issuer, rootKey));
        if (!keys.constLast())
            return false;
    }

    QStringList typeNames;
    for (const Utf8String &type : qAsConst(types))
        typeNames.append(type.toString());
    std::atomic<int> good(0);
    // Not blockingMap(), which leaves all the work to the pool: this call itself runs on one of its threads,
    // and in a full pool it would wait for ever. Started like this, the calling thread works too.
    QtConcurrent::startMap(packages.cbegin(), packages.cend(), PackageVerifier(typeNames, keys, &good))
        .startBlocking();
    if (good != packages.size())
        return false;
    warnOfDevelopmentKey();
    return true;
}

} // namespace ts::pm
