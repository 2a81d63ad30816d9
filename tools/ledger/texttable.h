#pragma once

#include <QStringList>
#include <QVector>

namespace ts::ledger {

/** Rows of text in columns that are as wide as they need to be. A value. */
class TextTable
{
public:
    explicit TextTable(const QStringList &head) { addRow(head); }

    /** As many cells as the head has; long ones are cut. */
    void addRow(const QStringList &cells);

    /** False, with an error told, if the output does not take it. */
    bool print() const;

private:
    QVector<QStringList> rows;
};

} // namespace ts::ledger
