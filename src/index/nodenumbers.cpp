#include "index/nodenumbers_p.h"

#include <QHash>
#include <QRandomGenerator>

namespace ts::pm {

namespace {

constexpr size_t smallestTable = 16;
constexpr int mostOfOneHash = 64; // ids; chance alone makes two or three among millions

void fetch([[maybe_unused]] const void *address)
{
#if defined(__GNUC__)
    __builtin_prefetch(address);
#endif
}

} // namespace

NodeNumbers::NodeNumbers()
    : secret(QRandomGenerator::global()->generate64() | 1)
{
}

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
    shift = 64;
    while (size >>= 1)
        --shift;
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
    const quint32 hash = hashOf(id);
    const size_t place = slotOf(id, hash);
    Slot &slot = table[place];
    if (slot.number < 0) {
        if (isCrowded(hash, place))
            return -1;
        slot = {hash, id.position(), id.size(), number};
        ++taken;
    }
    return slot.number;
}

// With a seed, because that is how the table of all nodes hashes: what collides here collides there.
quint32 NodeNumbers::hashOf(const QStringRef &id) const
{
    return qHash(id, uint(secret));
}

quint32 NodeNumbers::announce(const QStringRef &id) const
{
    const quint32 hash = hashOf(id);
    if (!table.empty())
        fetch(&table[placeOf(hash)]);
    return hash;
}

void NodeNumbers::approach(quint32 hash) const
{
    if (table.empty())
        return;
    const Slot &slot = table[placeOf(hash)];
    if (slot.number >= 0 && slot.length > 0)
        fetch(text->constData() + slot.position);
}

int NodeNumbers::find(const QStringRef &id, quint32 hash) const
{
    return table.empty() ? -1 : table[slotOf(id, hash)].number;
}

// Whether too many ids with that hash stand before the free slot \a end.
bool NodeNumbers::isCrowded(quint32 hash, size_t end) const
{
    int equal = 0;
    for (size_t place = placeOf(hash); place != end; place = (place + 1) & mask)
        equal += table[place].hash == hash ? 1 : 0;
    return equal >= mostOfOneHash;
}

// Where \a id is, or where it would be entered.
size_t NodeNumbers::slotOf(const QStringRef &id, quint32 hash) const
{
    size_t place = placeOf(hash);
    while (table[place].number >= 0) {
        const Slot &slot = table[place];
        if (slot.hash == hash && id == QStringRef(text, slot.position, slot.length))
            break;
        place = (place + 1) & mask;
    }
    return place;
}

} // namespace ts::pm
