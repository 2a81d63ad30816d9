#include "ledger/issuercertificate.h"

#include "ledger/latin1.h"

#include <TamselCrypto/PrivateKey>

#include <QJsonDocument>
#include <QJsonObject>

namespace ts::ledger {

namespace {

constexpr QLatin1String nameKey = latin1("name");
constexpr QLatin1String secondNameKey = latin1("secondName");
constexpr QLatin1String publicKeyKey = latin1("publicKey");
constexpr QLatin1String signatureKey = latin1("signature");

QString toBase64(const QByteArray &bytes)
{
    return QString::fromLatin1(bytes.toBase64());
}

QByteArray fromBase64(const QJsonValue &text)
{
    return QByteArray::fromBase64(text.toString().toLatin1());
}

} // namespace

IssuerCertificate IssuerCertificate::make(const QString &name, const QString &secondName,
                                          const crypto::ed25519::PublicKey &issuer,
                                          const crypto::ed25519::PrivateKey &root)
{
    const QByteArray publicKey = issuer.toDER();
    return {name, secondName, publicKey, root.sign(publicKey)};
}

IssuerCertificate IssuerCertificate::fromJson(const QByteArray &json)
{
    const QJsonObject object = QJsonDocument::fromJson(json).object();
    const QByteArray publicKey = fromBase64(object.value(publicKeyKey));
    const QByteArray signature = fromBase64(object.value(signatureKey));
    if (!crypto::ed25519::PublicKey::fromDER(publicKey) || signature.size() != crypto::ed25519::SignatureSize)
        return {};
    return {object.value(nameKey).toString(), object.value(secondNameKey).toString(), publicKey, signature};
}

QByteArray IssuerCertificate::toJson() const
{
    return QJsonDocument(QJsonObject{{nameKey, name},
                                     {secondNameKey, secondName},
                                     {publicKeyKey, toBase64(publicKey)},
                                     {signatureKey, toBase64(signature)}})
        .toJson();
}

bool IssuerCertificate::isSignedBy(const crypto::ed25519::PublicKey &root) const
{
    return root.verify(signature, publicKey);
}

IssuerRecord IssuerCertificate::toRecord() const
{
    return {signature, name.toUtf8(), secondName.toUtf8(), publicKey};
}

} // namespace ts::ledger
