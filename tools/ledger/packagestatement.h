#pragma once

#include "ledger/ledgerrecords.h"

#include <QByteArray>

namespace ts::ledger {

/**
 * The message that an issuer signs for a package: the canonical JSON of an object with the name of its type,
 * its manifest without the key "type", and the hexadecimal SHA-224 of each file under the file's path.
 *
 * Says the same of any record as a client makes of it. Null if the manifest has no canonical form; no
 * signature over that is good. Any thread.
 */
QByteArray packageStatement(const QByteArray &type, const PackageRecord &package);

} // namespace ts::ledger
