#include "logging_p.h"
#include "server/ledgerformat_p.h"
#include "server/packagefiles_p.h"
#include "server/packageledger.h"
#include "server/rootkey_p.h"

#include <TamselCrypto/JsonSignature>
#include <TamselCrypto/PublicKey>

#include <QByteArrayList>
#include <QStringBuilder>
#include <QtConcurrent>

#include <algorithm>
#include <atomic>

namespace ts::pm {

namespace {

using crypto::JsonSignature;
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

QByteArray filesStatement(const PackageEntry &package)
{
    QByteArray text("{");
    const QVector<PackageFile> files = packageFiles(package);
    for (const PackageFile &file : files) {
        const QByteArray path = JsonSignature::toByteArray(file.path);
        if (path.isNull())
            return QByteArray();
        if (text.size() > 1)
            text += ',';
        text += path;
        text += ":\"";
        text += QByteArray::fromRawData(reinterpret_cast<const char *>(file.digest), DigestSize).toHex();
        text += '"';
    }
    text += '}';
    return text;
}

/** What the issuer of a package signs, an object in canonical form; null if it has none. \a type is a JSON
 * string.
 */
QByteArray packageStatement(const PackageEntry &package, const QByteArray &type)
{
    const QByteArray files = filesStatement(package);
    const QByteArray manifest = JsonSignature::toByteArray(rawView(package.manifest), QLatin1String("type"));
    if (files.isNull() || manifest.isNull() || type.isNull())
        return QByteArray();
    return QByteArrayLiteral("{\"files\":") + files + ",\"manifest\":" + manifest + ",\"type\":" + type + '}';
}

bool hasAllDigests(const PackageEntry &package)
{
    return std::find(package.files.cbegin(), package.files.cend(), nullptr) == package.files.cend();
}

/** Counts the packages whose signature is good; is copied for, and called from, several threads. */
class PackageVerifier
{
public:
    PackageVerifier(const QByteArrayList &types, const QVector<PublicKey> &keys, std::atomic<int> *good)
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

    QByteArrayList types; // as JSON strings
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

    QByteArrayList typeNames;
    for (const Utf8String &type : qAsConst(types))
        typeNames.append(JsonSignature::toByteArray(type.toString()));
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
