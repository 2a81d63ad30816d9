#pragma once

#include "ledger/ledgerrecords.h"

#include <QByteArray>
#include <QString>

#include <optional>

namespace ts::ledger {

/**
 * Opens the document of a ledger into records, and tells what is wrong with it and where.
 *
 * Stricter than an application, which leaves a text that is cut off empty and then finds the signature bad.
 * Verifies no signature, see LedgerVerification. Any thread.
 */
class LedgerReader
{
public:
    /** Nothing if the document is damaged. */
    static std::optional<LedgerRecords> read(const QByteArray &document, QString *error);
};

} // namespace ts::ledger
