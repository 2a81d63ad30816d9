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
    /** Makes room for that many texts with so many characters in all. */
    void reserve(int texts, qint64 characters);

    /** Adds the next text. Groups are ordered as numbers, which count from 0 without large gaps. */
    void add(int group, const QStringRef &text);

    /** The numbers of the texts, counted in the order in which they were added, in ascending order. */
    QVector<int> sorted();

private:
    struct Entry
    {
        quint64 key;   // the word of the text that is being compared
        quint32 begin; // of the folded text in the words
        quint32 end;
        int number;
        int group;
    };
    struct Range
    {
        int first;
        int last;      // not included
        quint32 depth; // words that all texts of the range have in common
    };

    void sortByGroup();
    quint32 commonWords(const Range &range) const;
    void loadKeys(const Range &range);
    void pushEqualRuns(const Range &range);

    std::vector<quint64> words; // of all texts, one after another, each with several folded characters
    QVector<Entry> entries;
    QVector<Range> unsorted;
};

} // namespace ts::pm
