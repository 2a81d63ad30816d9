#pragma once

#include <QString>

namespace ts::ledger {

/**
 * Where things lie in a directory that a web server serves.
 *
 * Clients ask for "api/v1/ledger", and for each file below it. On disk that name is a directory, and the
 * ledger is the file "index" in it; docs/publishing.md tells how servers are told so. A value; any thread.
 */
class ServerTree
{
public:
    explicit ServerTree(const QString &root);

    QString directory() const { return ledgerDirectory; }
    QString ledger() const { return ledgerDirectory + QStringLiteral("/index"); }

    /** The ledger before the present one, whose files clients may still ask for. */
    QString previousLedger() const { return ledgerDirectory + QStringLiteral("/index.previous"); }

    /** \a id is the SHA-224 of the file's content in lower-case hexadecimal. */
    QString file(const QString &id) const { return ledgerDirectory + QLatin1Char('/') + id; }

    QString lock() const { return ledgerDirectory + QStringLiteral("/.lock"); }

private:
    QString ledgerDirectory; // absolute
};

} // namespace ts::ledger
