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

    /** The SHA-224 of a file that the ledger names. As ledger(). */
    QByteArray digestOf(const QString &id, QString *error) const;

    /** How messages call the ledger. */
    QString name() const;

private:
    const QString place;
    QUrl url;     // of the ledger; empty for one on this machine, and invalid if it is none
    QString path; // of the ledger on this machine; empty for one elsewhere
};

} // namespace ts::ledger
