#pragma once

#include "testexport_p.h"

#include <QStringRef>
#include <QVector>

namespace ts::pm {

/**
 * Orders texts by group and, within a group, as QString::compare() without regard to case does, but folds the
 * case of a text only as far as it is compared, several characters at a time.
 *
 * Texts that differ in case only keep no defined order.
 */
class TAMSEL_TEST_EXPORT FoldedOrder
{
public:
    /** Makes room for that many texts. */
    void reserve(int texts);

    /** Adds the next text, which has to stay where it is. Groups are ordered as numbers, which count from 0
     * without large gaps. */
    void add(int group, const QStringRef &text);

    /** The numbers of the texts, counted in the order in which they were added, in ascending order. */
    QVector<int> sorted();

private:
    struct Entry
    {
        quint64 key; // what is being compared of the text
        const QChar *text;
        int length;
        int number;
        int group;
    };
    struct Range
    {
        int first;
        int last;  // not included
        int depth; // units of text that all texts of the range have in common
    };

    void sortByGroup();
    int commonUnits(const Range &range) const;
    static int commonUnits(const Entry &a, const Entry &b, int depth, int most);
    static quint64 keyAt(const Entry &entry, int depth);
    void loadKeys(const Range &range);
    void pushEqualRuns(const Range &range);

    QVector<Entry> entries;
    QVector<Range> unsorted;
};

} // namespace ts::pm
