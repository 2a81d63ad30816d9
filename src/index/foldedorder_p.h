#pragma once

#include "testexport_p.h"

#include <QStringRef>
#include <QVector>

#include <memory>
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
    /** Makes room for that many texts. */
    void reserve(int texts);

    /** Adds the next text. Groups are ordered as numbers, which count from 0 without large gaps. */
    void add(int group, const QStringRef &text);

    /** The numbers of the texts, counted in the order in which they were added, in ascending order. */
    QVector<int> sorted();

private:
    struct Entry
    {
        quint64 key; // the word of the text that is being compared
        const quint64 *words;
        quint32 length; // in words
        int number;
        int group;
    };
    struct Range
    {
        int first;
        int last;      // not included
        quint32 depth; // words that all texts of the range have in common
    };

    quint64 *room(int wordCount);
    void sortByGroup();
    quint32 commonWords(const Range &range) const;
    void loadKeys(const Range &range);
    void pushEqualRuns(const Range &range);

    // The words of all texts, each with several folded characters. Pages stay where they are, and are small
    // enough for the allocator to keep them at hand instead of asking the system for each.
    std::vector<std::unique_ptr<quint64[]>> pages;
    quint64 *free = nullptr; // in the last page
    int freeWords = 0;
    QVector<Entry> entries;
    QVector<Range> unsorted;
};

} // namespace ts::pm
