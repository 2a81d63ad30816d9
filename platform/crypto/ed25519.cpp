#include "ed25519.h"

#include "pem_p.h"

#include <sodium.h>

#include <algorithm>

namespace ts::crypto::ed25519 {

namespace {

// What stands before the 32 bytes of the key; every length in it is fixed, so it has no other form.
constexpr std::array<unsigned char, 12> PublicKeyPrefix{0x30, 0x2a, 0x30, 0x05, 0x06, 0x03,
                                                        0x2b, 0x65, 0x70, 0x03, 0x21, 0x00};
constexpr std::array<unsigned char, 16> PrivateKeyPrefix{0x30, 0x2e, 0x02, 0x01, 0x00, 0x30, 0x05, 0x06,
                                                         0x03, 0x2b, 0x65, 0x70, 0x04, 0x22, 0x04, 0x20};
constexpr std::size_t KeySize = 32;
constexpr std::size_t PrivateKeyDerSize = PrivateKeyPrefix.size() + KeySize;

using PublicKeyDer = std::array<unsigned char, PublicKeyDerSize>;
using PrivateKeyDer = std::array<unsigned char, PrivateKeyDerSize>;

QByteArray publicLabel()
{
    return QByteArrayLiteral("PUBLIC KEY");
}

QByteArray privateLabel()
{
    return QByteArrayLiteral("PRIVATE KEY");
}

const unsigned char *bytesOf(const QByteArray &array)
{
    return reinterpret_cast<const unsigned char *>(array.constData());
}

bool libraryReady()
{
    static const bool ready = sodium_init() >= 0;
    return ready;
}

} // namespace

PublicKey PublicKey::fromPEM(const QByteArray &pem)
{
    PublicKeyDer der{};
    if (!readPem(pem, publicLabel(), der.data(), der.size()))
        return {};
    return fromDER(QByteArray(reinterpret_cast<const char *>(der.data()), int(der.size())));
}

PublicKey PublicKey::fromDER(const QByteArray &der)
{
    PublicKey key;
    const unsigned char *bytes = bytesOf(der);
    if (der.size() != PublicKeyDerSize
        || !std::equal(PublicKeyPrefix.cbegin(), PublicKeyPrefix.cend(), bytes))
        return key;
    std::copy_n(bytes + PublicKeyPrefix.size(), KeySize, key.bytes.begin());
    key.usable = libraryReady() && crypto_core_ed25519_is_valid_point(key.bytes.data()) == 1;
    return key;
}

PublicKey::operator bool() const
{
    return usable;
}

QByteArray PublicKey::toDER() const
{
    if (!usable)
        return {};
    QByteArray der(reinterpret_cast<const char *>(PublicKeyPrefix.data()), int(PublicKeyPrefix.size()));
    return der.append(reinterpret_cast<const char *>(bytes.data()), int(bytes.size()));
}

QByteArray PublicKey::toPEM() const
{
    return usable ? writePem(publicLabel(), bytesOf(toDER()), PublicKeyDerSize) : QByteArray();
}

bool PublicKey::verify(const QByteArray &signature, const QByteArray &message) const
{
    return usable && signature.size() == SignatureSize
           && crypto_sign_verify_detached(bytesOf(signature), bytesOf(message),
                                          static_cast<unsigned long long>(message.size()), bytes.data())
                  == 0;
}

PrivateKey::~PrivateKey()
{
    sodium_memzero(bytes.data(), bytes.size());
}

PrivateKey PrivateKey::generate()
{
    PrivateKey key;
    if (!libraryReady())
        return key;
    std::array<unsigned char, KeySize> publicBytes{};
    key.usable = crypto_sign_keypair(publicBytes.data(), key.bytes.data()) == 0;
    return key;
}

PrivateKey PrivateKey::fromPEM(const QByteArray &pem)
{
    PrivateKey key;
    PrivateKeyDer der{};
    if (libraryReady() && readPem(pem, privateLabel(), der.data(), der.size())
        && std::equal(PrivateKeyPrefix.cbegin(), PrivateKeyPrefix.cend(), der.cbegin())) {
        std::array<unsigned char, KeySize> publicBytes{};
        key.usable = crypto_sign_seed_keypair(publicBytes.data(), key.bytes.data(),
                                              der.data() + PrivateKeyPrefix.size())
                     == 0;
    }
    sodium_memzero(der.data(), der.size());
    return key;
}

PrivateKey::operator bool() const
{
    return usable;
}

QByteArray PrivateKey::toPEM() const
{
    if (!usable)
        return {};
    PrivateKeyDer der{};
    const auto seed = std::copy(PrivateKeyPrefix.cbegin(), PrivateKeyPrefix.cend(), der.begin());
    std::copy_n(bytes.cbegin(), KeySize, seed); // libsodium keeps the seed before the public key
    const QByteArray pem = writePem(privateLabel(), der.data(), der.size());
    sodium_memzero(der.data(), der.size());
    return pem;
}

PublicKey PrivateKey::publicKey() const
{
    PublicKey key;
    std::copy_n(bytes.cbegin() + KeySize, KeySize, key.bytes.begin());
    key.usable = usable;
    return key;
}

QByteArray PrivateKey::sign(const QByteArray &message) const
{
    if (!usable)
        return {};
    QByteArray signature(SignatureSize, Qt::Uninitialized);
    const int failed =
        crypto_sign_detached(reinterpret_cast<unsigned char *>(signature.data()), nullptr, bytesOf(message),
                             static_cast<unsigned long long>(message.size()), bytes.data());
    return failed ? QByteArray() : signature;
}

} // namespace ts::crypto::ed25519
