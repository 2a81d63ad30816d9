#pragma once

#include "ledger/ledgerrecords.h"

#include <TamselCrypto/PublicKey>

#include <QByteArray>
#include <QString>

namespace ts::crypto::ed25519 {
class PrivateKey;
}

namespace ts::ledger {

/**
 * The root key's word that an issuer may sign packages: a small JSON file, public like a ledger, that goes
 * into each ledger of that issuer. A value; any thread.
 */
struct IssuerCertificate
{
    QString name; ///< for people; not signed, as is secondName
    QString secondName;
    QByteArray publicKey; ///< DER
    QByteArray signature; ///< 64 bytes, by the root key over publicKey

    static IssuerCertificate make(const QString &name, const QString &secondName,
                                  const crypto::ed25519::PublicKey &issuer,
                                  const crypto::ed25519::PrivateKey &root);

    /** What toJson() gave; an empty certificate, with publicKey null, for anything else. */
    static IssuerCertificate fromJson(const QByteArray &json);
    QByteArray toJson() const;

    bool isSignedBy(const crypto::ed25519::PublicKey &root) const;
    IssuerRecord toRecord() const;
};

} // namespace ts::ledger
