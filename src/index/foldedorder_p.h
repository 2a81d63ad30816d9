#pragma once

#include "testexport_p.h"

#include <QStringRef>
#include <QVector>

#include <vector>

namespace ts::pm {

/**
 * Orders texts by group and, within a group, as QString::compare() without regard to case does, but folds the
 * case of each text once and compares several characters at a time.
 *
 * Texts that differ in case only keep no defined order.
 */
class TAMSEL_TEST_EXPORT FoldedOrder
{
public:
    /** Adds the next text. Groups are ordered as numbers. */
    void add(int group, const QStringRef &text);

    void reserve(int texts);

    /** The numbers of the texts, counted in the order in which they were added, in ascending order. */
    QVector<int> sorted();

private:
    struct Entry
    {
        quint64 key;   // the part of the text that is being compared
        quint32 begin; // of the folded text in the characters
        quint32 end;
        int number;
    };
    struct Range
    {
        int first;
        int last;      // not included
        quint32 depth; // characters that all texts of the range have in common
    };

    void loadKeys(const Range &range);
    quint32 commonPrefix(const Range &range) const;
    void pushEqualRuns(const Range &range, quint32 depth);

    std::vector<uint> characters; // folded, of all texts one after another
    QVector<Entry> entries;
    QVector<Range> unsorted;
};

} // namespace ts::pm
