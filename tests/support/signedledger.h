#pragma once

#include "ledger/ledgerrecords.h"

#include <TamselCrypto/PrivateKey>

#include <QMap>

namespace ts::pm::test {

/**
 * The records of a ledger with the keys of its issuers, whom the development root key signs.
 *
 * What is added is signed at once. To break a signature, change the record; to make it good again, sign it.
 */
class SignedLedger
{
public:
    using Contents = QMap<QByteArray, QByteArray>; // path to content

    /** With so many issuers, each with a new key. */
    explicit SignedLedger(int issuers = 1);

    /** Returns the index of the package. */
    quint32 addPackage(const QByteArray &id, const QByteArray &type, const QByteArray &manifest,
                       const Contents &files = {}, quint16 issuer = 0);

    /** A keyword with one language after the other, each with its values; returns the index. */
    quint32 addKeyword(const QByteArray &id, quint8 type,
                       const QMap<QByteArray, QVector<QByteArray>> &values = {});

    /** Gives the issuer that key, or the package that manifest, and signs it as it stands. */
    void sign(ledger::IssuerRecord &issuer, const QByteArray &publicKey) const;
    void sign(ledger::PackageRecord &package, const QByteArray &manifest) const;

    /** What the issuer of the package signs. */
    QByteArray statement(const ledger::PackageRecord &package) const;

    QByteArray toByteArray() const;

    ledger::LedgerRecords records;

private:
    crypto::ed25519::PrivateKey rootKey;
    QVector<crypto::ed25519::PrivateKey> issuerKeys;
};

} // namespace ts::pm::test
