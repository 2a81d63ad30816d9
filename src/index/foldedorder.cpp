#include "index/foldedorder_p.h"

#include <QChar>

#include <algorithm>

namespace ts::pm {

namespace {

constexpr int charactersInWord = 3;
constexpr int wordsInPage = 8192;
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
    quint64 *const words = room(text.size() / charactersInWord + 1);
    quint64 *next = words;
    quint64 word = 0;
    int missing = charactersInWord;
    QChar previous;
    for (const QChar unit : text) {
        word = (word << bitsOfCharacter) | (foldedUnit(unit, previous) + 1);
        previous = unit;
        if (--missing == 0) {
            *next++ = word;
            word = 0;
            missing = charactersInWord;
        }
    }
    if (missing < charactersInWord)
        *next++ = word << (missing * bitsOfCharacter);
    entries.append({0, words, quint32(next - words), entries.size(), group});
    freeWords -= int(next - free);
    free = next;
}

// Where that many words fit; they are taken by moving on.
quint64 *FoldedOrder::room(int wordCount)
{
    if (wordCount > freeWords) {
        freeWords = qMax(wordCount, wordsInPage);
        pages.push_back(std::make_unique<quint64[]>(size_t(freeWords)));
        free = pages.back().get();
    }
    return free;
}

QVector<int> FoldedOrder::sorted()
{
    sortByGroup();
    while (!unsorted.isEmpty()) {
        Range range = unsorted.takeLast();
        range.depth += commonWords(range);
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

void FoldedOrder::sortByGroup()
{
    QVector<int> ends;
    for (const Entry &entry : qAsConst(entries)) {
        if (entry.group >= ends.size())
            ends.resize(entry.group + 1);
        ++ends[entry.group];
    }
    int end = 0;
    for (int &groupEnd : ends) {
        unsorted.append({end, end + groupEnd, 0});
        end += groupEnd;
        groupEnd = end;
    }
    QVector<Entry> grouped(entries.size());
    for (const Entry &entry : qAsConst(entries))
        grouped[--ends[entry.group]] = entry;
    entries = grouped;
}

// The number of words, from the depth of the range on, that all its texts begin with.
quint32 FoldedOrder::commonWords(const Range &range) const
{
    const Entry &model = entries.at(range.first);
    const quint64 *modelText = model.words + range.depth;
    quint32 common = model.length - range.depth;
    for (int i = range.first + 1; i < range.last && common > 0; ++i) {
        const Entry &entry = entries.at(i);
        const quint64 *text = entry.words + range.depth;
        common = qMin(common, entry.length - range.depth);
        common = quint32(std::mismatch(modelText, modelText + common, text).first - modelText);
    }
    return common;
}

void FoldedOrder::loadKeys(const Range &range)
{
    for (int i = range.first; i < range.last; ++i) {
        Entry &entry = entries[i];
        entry.key = range.depth < entry.length ? entry.words[range.depth] : 0;
    }
}

// Queues the runs of equal keys for comparison of what follows. Texts that have ended are equal.
void FoldedOrder::pushEqualRuns(const Range &range)
{
    for (int first = range.first; first < range.last;) {
        int last = first + 1;
        while (last < range.last && entries.at(last).key == entries.at(first).key)
            ++last;
        if (last - first > 1 && entries.at(first).key != 0)
            unsorted.append({first, last, range.depth + 1});
        first = last;
    }
}

} // namespace ts::pm
