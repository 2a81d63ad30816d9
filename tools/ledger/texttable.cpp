#include "ledger/texttable.h"

#include "ledger/console.h"
#include "ledger/shortened.h"

#include <algorithm>

namespace ts::ledger {

void TextTable::addRow(const QStringList &cells)
{
    QStringList row;
    for (const QString &cell : cells)
        row.append(shortened(cell));
    rows.append(row);
}

// Line by line: a table can be much larger than the ledger it is about.
bool TextTable::print() const
{
    QVector<int> widths(rows.constFirst().size(), 0);
    for (const QStringList &row : rows) {
        for (int column = 0; column < row.size(); ++column)
            widths[column] = qMax(widths.at(column), row.at(column).size());
    }
    return std::all_of(rows.begin(), rows.end(), [&widths](const QStringList &row) {
        QString line;
        for (int column = 0; column < row.size(); ++column)
            line += Console::printable(row.at(column)).leftJustified(widths.at(column) + 2);
        while (line.endsWith(QLatin1Char(' ')))
            line.chop(1);
        return Console::print(line);
    });
}

} // namespace ts::ledger
