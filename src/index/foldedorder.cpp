#include "index/foldedorder_p.h"

#include <QChar>

#include <algorithm>

namespace ts::pm {

namespace {

constexpr quint32 charactersInKey = 3;
constexpr int bitsOfCharacter = 21; // a code point and one more, since 0 stands for the end of the text

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

void FoldedOrder::reserve(int texts)
{
    entries.reserve(texts);
}

void FoldedOrder::add(int group, const QStringRef &text)
{
    const auto begin = quint32(characters.size());
    QChar previous;
    for (const QChar unit : text) {
        characters.push_back(foldedUnit(unit, previous));
        previous = unit;
    }
    entries.append({quint64(group), begin, quint32(characters.size()), entries.size()});
}

QVector<int> FoldedOrder::sorted()
{
    std::sort(entries.begin(), entries.end(), [](const Entry &a, const Entry &b) { return a.key < b.key; });
    pushEqualRuns({0, entries.size(), 0}, 0);
    while (!unsorted.isEmpty()) {
        Range range = unsorted.takeLast();
        range.depth += commonPrefix(range);
        loadKeys(range);
        const auto first = entries.begin() + range.first;
        std::sort(first, entries.begin() + range.last,
                  [](const Entry &a, const Entry &b) { return a.key < b.key; });
        pushEqualRuns(range, range.depth + charactersInKey);
    }
    QVector<int> numbers;
    numbers.reserve(entries.size());
    for (const Entry &entry : qAsConst(entries))
        numbers.append(entry.number);
    return numbers;
}

// The number of characters, from the depth of the range on, that all its texts begin with.
quint32 FoldedOrder::commonPrefix(const Range &range) const
{
    const Entry &model = entries.at(range.first);
    const uint *modelText = characters.data() + model.begin + range.depth;
    quint32 common = model.end - model.begin - range.depth;
    for (int i = range.first + 1; i < range.last && common > 0; ++i) {
        const Entry &entry = entries.at(i);
        const uint *text = characters.data() + entry.begin + range.depth;
        common = qMin(common, entry.end - entry.begin - range.depth);
        common = quint32(std::mismatch(modelText, modelText + common, text).first - modelText);
    }
    return common;
}

void FoldedOrder::loadKeys(const Range &range)
{
    for (int i = range.first; i < range.last; ++i) {
        Entry &entry = entries[i];
        quint64 key = 0;
        for (quint32 character = 0; character < charactersInKey; ++character) {
            const quint32 position = entry.begin + range.depth + character;
            key = (key << bitsOfCharacter) | (position < entry.end ? characters[position] + 1 : 0);
        }
        entry.key = key;
    }
}

// Queues the runs of equal keys for comparison of what follows. Texts that have ended at the depth are equal.
void FoldedOrder::pushEqualRuns(const Range &range, quint32 depth)
{
    for (int first = range.first; first < range.last;) {
        int last = first + 1;
        while (last < range.last && entries.at(last).key == entries.at(first).key)
            ++last;
        const Entry &entry = entries.at(first);
        if (last - first > 1 && entry.end - entry.begin >= depth)
            unsorted.append({first, last, depth});
        first = last;
    }
}

} // namespace ts::pm
