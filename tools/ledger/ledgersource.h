#pragma once

#include <QByteArray>
#include <QString>
#include <QUrl>

namespace ts::ledger {

/** Where a ledger that is to be looked at comes from: a file, a published directory, or a URL. One thread. */
class LedgerSource
{
public:
    explicit LedgerSource(const QString &place);

    /** Null, with what went wrong in \a error, if it cannot be had. */
    QByteArray ledger(QString *error) const;

    /** The content of a file that the ledger names. As ledger(). */
    QByteArray file(const QString &id, QString *error) const;

private:
    QUrl url;     // of the ledger; empty for one on this machine
    QString path; // of the ledger on this machine
};

} // namespace ts::ledger
