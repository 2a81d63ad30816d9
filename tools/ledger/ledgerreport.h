#pragma once

#include "ledger/ledgerrecords.h"
#include "ledger/ledgerverification.h"
#include "ledger/texttable.h"

#include <QJsonObject>
#include <QString>

namespace ts::ledger {

/** Tells people, or their programs, what is in a ledger. Any thread. */
class LedgerReport
{
public:
    /** \a records and \a verification have to outlive this. */
    LedgerReport(const LedgerRecords &records, const LedgerVerification &verification);

    /** Prints tables with a line for each record. False, with an error told, if that cannot be written. */
    bool print() const;

    /** Prints all that the records hold, as one JSON object. False as for print(). */
    bool printJson() const;

    /** One line with the numbers of records. */
    QString summary() const;

private:
    TextTable issuerTable() const;
    TextTable packageTable() const;
    TextTable keywordTable() const;
    TextTable linkTable() const;
    QString startOf(const LinkRecord &link, int length) const;
    QString endOf(const LinkRecord &link, int length) const;
    QString idOf(quint32 index, bool isPackage, int length) const;
    QJsonObject issuerJson(int index) const;
    QJsonObject keywordJson(int index) const;
    QJsonObject packageJson(int index) const;
    QJsonObject linkJson(int index) const;

    const LedgerRecords &records;
    const LedgerVerification &verification;
};

} // namespace ts::ledger
