#pragma once

#include "ledger/ledgerrecords.h"

#include <QByteArray>
#include <QStringList>

namespace ts::ledger {

/**
 * Makes the binary document of a ledger from its records.
 *
 * Writes what it is given, in the order in which it is given: it signs nothing, sorts nothing, and does not
 * look whether indices lie in their tables. The sections stand directly behind the header, in the order
 * issuers, keywords, packages, links.
 *
 * Threads: any.
 * Errors: records that the format cannot carry make no document.
 */
class LedgerWriter
{
public:
    explicit LedgerWriter(const LedgerRecords &records);

    /** One message for each limit of the format that is broken, with the place of the fault; empty if none
     * is. */
    QStringList errors() const { return problems; }

    /** The document; null if there are errors. The same records give the same bytes. */
    QByteArray toByteArray() const;

private:
    const LedgerRecords records;
    QStringList problems;
};

} // namespace ts::ledger
