#include "storage/digest_p.h"

#include <openssl/evp.h>

namespace ts::pm {

namespace {

const EVP_MD *libcryptoAlgorithm(QCryptographicHash::Algorithm algorithm)
{
    switch (algorithm) {
    case QCryptographicHash::Md5:
        return EVP_md5();
    case QCryptographicHash::Sha1:
        return EVP_sha1();
    case QCryptographicHash::Sha224:
        return EVP_sha224();
    case QCryptographicHash::Sha256:
        return EVP_sha256();
    case QCryptographicHash::Sha384:
        return EVP_sha384();
    case QCryptographicHash::Sha512:
        return EVP_sha512();
    default:
        return nullptr;
    }
}

} // namespace

QByteArray digest(const QByteArray &data, QCryptographicHash::Algorithm algorithm)
{
    if (const EVP_MD *type = libcryptoAlgorithm(algorithm)) {
        QByteArray result(EVP_MD_size(type), Qt::Uninitialized);
        auto *bytes = reinterpret_cast<unsigned char *>(result.data());
        if (EVP_Digest(data.constData(), size_t(data.size()), bytes, nullptr, type, nullptr) == 1)
            return result;
    }
    // Not offered by libcrypto, or switched off in this system's configuration of it.
    return QCryptographicHash::hash(data, algorithm);
}

} // namespace ts::pm
