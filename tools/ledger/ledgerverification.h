#pragma once

#include "ledger/ledgerrecords.h"
#include "ledger/problems.h"

#include <TamselCrypto/PublicKey>

#include <QVector>

namespace ts::ledger {

/**
 * What a publisher wants to know of a ledger that clients do not tell: which signature is bad, and which
 * records are of no use. A value; signatures are verified on the global thread pool.
 */
struct LedgerVerification
{
    QVector<bool> issuers;  ///< for each, whether the root key has signed it
    QVector<bool> packages; ///< for each, whether its issuer has signed it
    /** Errors: for what clients reject the whole ledger. Warnings: what they pass over, or cannot install. */
    Problems problems;

    static LedgerVerification of(const LedgerRecords &records, const crypto::ed25519::PublicKey &root);
};

} // namespace ts::ledger
