#include "index/foldedorder_p.h"

#include "index/prefetch_p.h"

#include <QChar>

#include <algorithm>

namespace ts::pm {

namespace {

constexpr int unitsInKey = 3;
constexpr int bitsOfUnit = 21; // a code point and one more: 0 stands for the end of the text
// Texts may be chosen so that each look at them finds one that has less in common with the others. Were all
// of them read to that place, putting them in order would take cubic time.
constexpr int mostCommonUnits = 64; // found in one look
// Texts lie all over the memory, and a group of a large catalogue does not stay in the cache.
constexpr int textsAhead = 16;

// What a code unit counts for in a comparison without regard to case: the second half of a surrogate pair
// counts for the whole code point.
uint foldedUnit(QChar unit, QChar previous)
{
    const ushort code = unit.unicode();
    if (code < 0x80)
        return code >= 'A' && code <= 'Z' ? code | 0x20U : code;
    if (unit.isLowSurrogate() && previous.isHighSurrogate())
        return QChar::toCaseFolded(QChar::surrogateToUcs4(previous, unit));
    return QChar::toCaseFolded(uint(code));
}

} // namespace

FoldedOrder::FoldedOrder(const QVector<int> &groupSizes)
{
    places.reserve(groupSizes.size());
    int first = 0;
    for (const int size : groupSizes) {
        places.append(first);
        if (size > 1)
            unsorted.append({first, first + size, 0});
        first += size;
    }
    entries.resize(first);
}

void FoldedOrder::add(int group, const QStringRef &text)
{
    entries[places[group]++] = {0, text.unicode(), text.size(), count++};
}

QVector<int> FoldedOrder::sorted()
{
    while (!unsorted.isEmpty()) {
        Range range = unsorted.takeLast();
        skipCommonUnits(range);
        loadKeys(range);
        std::sort(entries.begin() + range.first, entries.begin() + range.last,
                  [](const Entry &a, const Entry &b) { return a.key < b.key; });
        pushEqualRuns(range);
    }
    QVector<int> numbers;
    numbers.reserve(entries.size());
    for (const Entry &entry : qAsConst(entries))
        numbers.append(entry.number);
    return numbers;
}

void FoldedOrder::skipCommonUnits(Range &range) const
{
    int common = mostCommonUnits;
    while (common == mostCommonUnits) {
        common = commonUnits(range);
        range.depth += common;
    }
}

// A number of units, from the depth of the range on, that all its texts have in common; not always the
// largest.
int FoldedOrder::commonUnits(const Range &range) const
{
    const Entry &model = entries.at(range.first);
    int common = qMin(model.length - range.depth, mostCommonUnits);
    for (int i = range.first + 1; i < range.last && common > 0; ++i) {
        fetchAhead(range, i);
        common = commonUnits(model, entries.at(i), range.depth, common);
    }
    return common;
}

int FoldedOrder::commonUnits(const Entry &a, const Entry &b, int depth, int most)
{
    const int end = depth + qMin(most, b.length - depth);
    const QChar *different = std::mismatch(a.text + depth, a.text + end, b.text + depth).first;
    int common = int(different - a.text);
    while (common < end && keyAt(a, common) == keyAt(b, common))
        common += unitsInKey;
    return qMin(common, end) - depth;
}

// Some folded units of a text from \a depth on.
quint64 FoldedOrder::keyAt(const Entry &entry, int depth)
{
    quint64 key = 0;
    for (int i = depth; i < depth + unitsInKey; ++i) {
        key <<= bitsOfUnit;
        if (i < entry.length)
            key |= foldedUnit(entry.text[i], i > 0 ? entry.text[i - 1] : QChar()) + 1;
    }
    return key;
}

void FoldedOrder::loadKeys(const Range &range)
{
    for (int i = range.first; i < range.last; ++i) {
        fetchAhead(range, i);
        entries[i].key = keyAt(entries.at(i), range.depth);
    }
}

// What of its text the range compares.
void FoldedOrder::fetchAhead(const Range &range, int current) const
{
    if (current + textsAhead < range.last)
        prefetch(entries.at(current + textsAhead).text + range.depth);
}

// Queues the runs of equal keys for comparison of what follows. Texts that have ended are equal.
void FoldedOrder::pushEqualRuns(const Range &range)
{
    for (int first = range.first; first < range.last;) {
        int last = first + 1;
        while (last < range.last && entries.at(last).key == entries.at(first).key)
            ++last;
        if (last - first > 1 && entries.at(first).key % (1U << bitsOfUnit) != 0)
            unsorted.append({first, last, range.depth + unitsInKey});
        first = last;
    }
}

} // namespace ts::pm
