#include "ledger/texttable.h"

#include "ledger/console.h"

namespace ts::ledger {

QString TextTable::toText() const
{
    QVector<int> widths(rows.constFirst().size(), 0);
    for (const QStringList &row : rows) {
        for (int column = 0; column < row.size(); ++column)
            widths[column] = qMax(widths.at(column), row.at(column).size());
    }
    QStringList lines;
    for (const QStringList &row : rows) {
        QString line;
        for (int column = 0; column < row.size(); ++column)
            line += Console::printable(row.at(column)).leftJustified(widths.at(column) + 2);
        lines.append(line.trimmed());
    }
    return lines.join(QLatin1Char('\n'));
}

} // namespace ts::ledger
