#pragma once

#include "ledger/ledgerrecords.h"
#include "ledger/ledgerverification.h"

#include <QJsonObject>
#include <QString>

namespace ts::ledger {

/** Tells people, or their programs, what is in a ledger. Any thread. */
class LedgerReport
{
public:
    /** \a records and \a verification have to outlive this. */
    LedgerReport(const LedgerRecords &records, const LedgerVerification &verification);

    /** Tables with a line for each record. */
    QString toText() const;
    QJsonObject toJson() const;

    /** One line with the numbers of records. */
    QString summary() const;

private:
    QString issuerTable() const;
    QString packageTable() const;
    QString keywordTable() const;
    QString linkTable() const;
    QString startOf(const LinkRecord &link) const;
    QString endOf(const LinkRecord &link) const;
    QString idOf(quint32 index, bool isPackage) const;
    QJsonObject issuerJson(int index) const;
    QJsonObject keywordJson(const KeywordRecord &keyword) const;
    QJsonObject packageJson(int index) const;
    QJsonObject linkJson(const LinkRecord &link) const;

    const LedgerRecords &records;
    const LedgerVerification &verification;
};

} // namespace ts::ledger
