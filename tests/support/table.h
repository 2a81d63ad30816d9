#pragma once

#include <QStringList>
#include <QVector>

namespace ts::pm::test {

/** One line of a table: what a case starts from, and in its last cell what has to come of it. */
class Row
{
public:
    explicit Row(const QString &line)
        : cells(line.split(QLatin1Char('|')))
    {
        for (QString &cell : cells)
            cell = cell.trimmed();
    }

    QString operator[](int cell) const { return cells.at(cell); }
    QString text() const { return cells.join(QLatin1String(" | ")); }

    /** The text of the row with \a outcome in its last cell: to be compared with text(). */
    QString with(const QString &outcome) const
    {
        QStringList actual = cells;
        actual.last() = outcome;
        return actual.join(QLatin1String(" | "));
    }

private:
    QStringList cells;
};

/** The rows of a table that is written as a raw string, with "|" between its cells. A line without one goes
 * on with the line before. */
inline QVector<Row> rows(const char *table)
{
    QStringList lines;
    for (const QString &line : QString::fromUtf8(table).split(QLatin1Char('\n'))) {
        if (line.contains(QLatin1Char('|')))
            lines.append(line);
        else if (!line.trimmed().isEmpty())
            lines.last() += QLatin1Char(' ') + line.trimmed();
    }
    QVector<Row> rows;
    for (const QString &line : qAsConst(lines))
        rows.append(Row(line));
    return rows;
}

} // namespace ts::pm::test
