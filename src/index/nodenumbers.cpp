#include "index/nodenumbers_p.h"

#include <QHash>

namespace ts::pm {

namespace {

constexpr size_t smallestTable = 16;

void fetch([[maybe_unused]] const void *address)
{
#if defined(__GNUC__)
    __builtin_prefetch(address);
#endif
}

} // namespace

void NodeNumbers::reserve(int count)
{
    size_t size = qMax(smallestTable, table.size());
    while (size < 2 * size_t(count))
        size *= 2;
    if (size == table.size())
        return;
    std::vector<Slot> smaller(size);
    smaller.swap(table);
    mask = size - 1;
    for (const Slot &slot : smaller) {
        if (slot.number >= 0)
            table[slotOf(QStringRef(text, slot.position, slot.length), slot.hash)] = slot;
    }
}

int NodeNumbers::insert(const QStringRef &id, int number)
{
    if (2 * (taken + 1) > table.size())
        reserve(int(2 * (taken + 1)));
    if (!text)
        text = id.string();
    const quint32 hash = qHash(id);
    Slot &slot = table[slotOf(id, hash)];
    if (slot.number < 0) {
        slot = {hash, id.position(), id.size(), number};
        ++taken;
    }
    return slot.number;
}

quint32 NodeNumbers::announce(const QStringRef &id) const
{
    const quint32 hash = qHash(id);
    if (!table.empty())
        fetch(&table[hash & mask]);
    return hash;
}

void NodeNumbers::approach(quint32 hash) const
{
    if (table.empty())
        return;
    const Slot &slot = table[hash & mask];
    if (slot.number >= 0 && slot.length > 0)
        fetch(text->constData() + slot.position);
}

int NodeNumbers::find(const QStringRef &id, quint32 hash) const
{
    return table.empty() ? -1 : table[slotOf(id, hash)].number;
}

// Where \a id is, or where it would be entered.
size_t NodeNumbers::slotOf(const QStringRef &id, quint32 hash) const
{
    size_t place = hash & mask;
    while (table[place].number >= 0) {
        const Slot &slot = table[place];
        if (slot.hash == hash && id == QStringRef(text, slot.position, slot.length))
            break;
        place = (place + 1) & mask;
    }
    return place;
}

} // namespace ts::pm
