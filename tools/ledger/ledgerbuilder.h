#pragma once

#include "ledger/catalogue.h"
#include "ledger/issuercertificate.h"
#include "ledger/ledgerrecords.h"
#include "ledger/problems.h"

#include <TamselCrypto/PrivateKey>

#include <QHash>
#include <QMap>

namespace ts::ledger {

/**
 * Makes the records of a ledger from a catalogue, all of whose packages one issuer signs.
 *
 * The same catalogue and the same key give the same records. Manifests are stored in their canonical form:
 * what is signed is what is stored.
 *
 * Threads: one; signatures are made on the global thread pool. A builder builds once.
 */
class LedgerBuilder
{
public:
    /** \a catalogue has been read without errors, and \a key is the private half of the certified one. */
    LedgerBuilder(const Catalogue &catalogue, const IssuerCertificate &certificate,
                  const crypto::ed25519::PrivateKey &key, Problems &problems);

    LedgerRecords build();

private:
    struct Node
    {
        quint32 index = 0;
        bool isPackage = false;
    };

    void addKeyword(const CatalogueKeyword &keyword);
    void addPackage(const CataloguePackage &package);
    void addLink(const CatalogueLink &link);
    QVector<TranslationRecord> translations(const pm::KeywordInfo &keyword) const;
    QByteArray manifestText(const CataloguePackage &package);
    void listLanguages();
    void sign();

    const Catalogue &catalogue;
    const IssuerCertificate &certificate;
    const crypto::ed25519::PrivateKey &key;
    Problems &problems;
    LedgerRecords records;
    QMap<QString, quint16> languages; // to their numbers
    QHash<QString, Node> nodes;       // by id
};

} // namespace ts::ledger
