// Any bytes as a key, in both forms: what is taken for a key is written as it was read, and trusts no junk.

#include "target.h"

#include <TamselCrypto/PrivateKey>

using namespace ts::crypto::ed25519;
using ts::fuzz::require;

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray input = ts::fuzz::bytes(data, size);
    if (const auto key = PublicKey::fromDER(input))
        require(key.toDER() == input, "DER has one form");
    if (const auto key = PublicKey::fromPEM(input)) {
        require(bool(PublicKey::fromDER(key.toDER())), "the DER of a key is a key");
        require(PublicKey::fromPEM(key.toPEM()).toDER() == key.toDER(), "PEM survives");
        require(!key.verify(QByteArray(SignatureSize, '\0'), input), "nothing is signed by zeros");
    }
    if (const auto key = PrivateKey::fromPEM(input))
        require(key.publicKey().verify(key.sign(input), input), "a key pair fits");
    return 0;
}
