#include "logging_p.h"
#include "pooljobs_p.h"
#include "server/ledgerformat_p.h"
#include "server/packagefiles_p.h"
#include "server/packageledger.h"
#include "server/rootkey_p.h"

#include <TamselCrypto/JsonSignature>
#include <TamselCrypto/PublicKey>

#include <algorithm>
#include <atomic>
#include <limits>
#include <mutex>

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

// Bytes of a statement. What grows beyond that, as escapes can make a ledger grow six times, is signed by
// nobody: a QByteArray holds hardly more, and ends the process when it has to.
constexpr qint64 largestStatement = std::numeric_limits<int>::max() - 1024;
constexpr int largestFrame = 64; // around the parts of a statement, and around the digits of a file

/** The bytes of a statement in which no text has to be escaped, as it usually is. */
qint64 usualSize(const PackageEntry &package, const Utf8String &type)
{
    qint64 size = package.manifest.length + type.length + largestFrame;
    for (auto file = package.files.cbegin(); file != package.files.cend(); ++file)
        size += file.key().size() + 2 * DigestSize + 6; // quotes, colon and comma
    return qMin(size, largestStatement);
}

void appendHex(const unsigned char *digest, QByteArray *text)
{
    constexpr char digits[] = "0123456789abcdef";
    const int before = text->size();
    text->resize(before + 2 * DigestSize);
    char *to = text->data() + before;
    for (const unsigned char *byte = digest; byte != digest + DigestSize; ++byte) {
        *to++ = digits[*byte >> 4];
        *to++ = digits[*byte & 0xf];
    }
}

bool appendFile(const PackageFile &file, QByteArray *text)
{
    if (!JsonSignature::appendString(file.path, text) || text->size() > largestStatement - largestFrame)
        return false;
    text->append(":\"", 2);
    appendHex(file.digest, text);
    text->append('"');
    return true;
}

/** What the issuer of a package signs, an object in canonical form; null if it has none. */
QByteArray packageStatement(const PackageEntry &package, const Utf8String &type)
{
    QByteArray text;
    text.reserve(int(usualSize(package, type)));
    text.append("{\"files\":{");
    const QVector<PackageFile> files = packageFiles(package);
    for (const PackageFile &file : files) {
        if (&file != files.cbegin())
            text.append(',');
        if (!appendFile(file, &text))
            return QByteArray();
    }
    const QByteArray manifest = JsonSignature::toByteArray(rawView(package.manifest), QLatin1String("type"));
    if (manifest.isNull() || text.size() + qint64(manifest.size()) > largestStatement - largestFrame)
        return QByteArray();
    text.append("},\"manifest\":").append(manifest).append(",\"type\":");
    if (!JsonSignature::appendString(type.toString(), &text))
        return QByteArray();
    text.append('}');
    return text;
}

bool hasAllDigests(const PackageEntry &package)
{
    return std::find(package.files.cbegin(), package.files.cend(), nullptr) == package.files.cend();
}

/** Counts the packages whose signature is good; is copied for, and called from, several threads. */
class PackageVerifier
{
public:
    PackageVerifier(const QVector<Utf8String> &types, const QVector<PublicKey> &keys, std::atomic<int> *good)
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

    QVector<Utf8String> types;
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
    static std::once_flag warned;
    std::call_once(warned, [] {
        qCWarning(lcPm)
            << "Ledgers are verified with the development root key, with which everybody can sign";
    });
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

    std::atomic<int> good(0);
    visitInParallel(packages, PackageVerifier(types, keys, &good));
    if (good != packages.size())
        return false;
    warnOfDevelopmentKey();
    return true;
}

} // namespace ts::pm
