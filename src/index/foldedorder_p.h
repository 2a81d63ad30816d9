#pragma once

#include <QStringRef>
#include <QVector>

namespace ts::pm {

/**
 * Orders texts by group and, within a group, as QString::compare() without regard to case does, but folds the
 * case of a text only as far as it is compared, several characters at a time.
 *
 * Texts that differ in case only keep no defined order.
 *
 * Ownership: the texts are not owned.
 * Threads: worker job only.
 */
class FoldedOrder
{
public:
    /** For as many texts of each group as \a groupSizes tells. Groups are ordered as numbers. */
    explicit FoldedOrder(const QVector<int> &groupSizes);

    /** Adds the next text, which has to stay where it is. */
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
    };
    struct Range
    {
        int first;
        int last;  // not included
        int depth; // units of text that all texts of the range have in common
    };

    void skipCommonUnits(Range &range) const;
    int commonUnits(const Range &range) const;
    static int commonUnits(const Entry &a, const Entry &b, int depth, int most);
    static quint64 keyAt(const Entry &entry, int depth);
    void loadKeys(const Range &range);
    void fetchAhead(const Range &range, int current) const;
    void pushEqualRuns(const Range &range);

    QVector<Entry> entries; // by group
    QVector<int> places;    // of the next text of each group
    int count = 0;
    QVector<Range> unsorted;
};

} // namespace ts::pm
