#pragma once

#include "tamselcrypto_export.h"

#include <QByteArray>

#include <array>

namespace ts::crypto::ed25519 {

constexpr int SignatureSize = 64;    ///< bytes of a signature
constexpr int PublicKeyDerSize = 44; ///< bytes of a SubjectPublicKeyInfo (RFC 8410)

/**
 * An Ed25519 public key (RFC 8032).
 *
 * A value.
 *
 * Threads: immutable, any thread.
 * Errors: what is no key makes an unusable object, which converts to false and verifies nothing.
 */
class TAMSELCRYPTO_EXPORT PublicKey
{
public:
    /** An unusable key. */
    PublicKey() = default;

    /** From a PEM block "PUBLIC KEY" that holds what fromDER() reads; text around the block is ignored. */
    static PublicKey fromPEM(const QByteArray &pem);

    /**
     * From the 44 bytes of a SubjectPublicKeyInfo for Ed25519, and from nothing else. Bytes that are no point
     * of the curve, or one of small order, under which anybody can sign, are no key.
     */
    static PublicKey fromDER(const QByteArray &der);

    explicit operator bool() const;

    QByteArray toDER() const;
    QByteArray toPEM() const;

    /** True if \a signature is 64 bytes long and a valid signature of \a message under this key. */
    bool verify(const QByteArray &signature, const QByteArray &message) const;

private:
    friend class PrivateKey;
    std::array<unsigned char, 32> bytes{};
    bool usable = false;
};

/**
 * An Ed25519 private key, for those who publish.
 *
 * A value whose bytes are wiped when it goes.
 *
 * Threads: immutable, any thread.
 * Errors: as for PublicKey.
 */
class TAMSELCRYPTO_EXPORT PrivateKey
{
public:
    /** An unusable key. */
    PrivateKey() = default;
    PrivateKey(const PrivateKey &other) = default;
    PrivateKey &operator=(const PrivateKey &other) = default;
    ~PrivateKey();

    /** A new random key; unusable if the system has no randomness to give. */
    static PrivateKey generate();

    /** From a PEM block "PRIVATE KEY" that holds the 48 bytes of a PKCS#8 key (RFC 8410). */
    static PrivateKey fromPEM(const QByteArray &pem);

    explicit operator bool() const;

    QByteArray toPEM() const;
    PublicKey publicKey() const;

    /** The 64 bytes of the signature, the same for the same input; empty if the key is unusable. */
    QByteArray sign(const QByteArray &message) const;

private:
    std::array<unsigned char, 64> bytes{};
    bool usable = false;
};

} // namespace ts::crypto::ed25519
