#include "index/nodetable_p.h"

#include "index/packageindexnode.h"
#include "index/prefetch_p.h"
#include "logging_p.h"

#include <array>
#include <cstring>
#include <utility>

namespace ts::pm {

namespace {

constexpr size_t smallestTable = 16;
constexpr int mostOfOneHash = 64; // ids; chance alone makes two or three among millions
constexpr int nodesInBlock = 64;

} // namespace

NodeTable::NodeTable()
{
    resize(smallestTable);
}

NodeTable::~NodeTable()
{
    qDeleteAll(created);
}

void NodeTable::reserve(int count)
{
    created.reserve(count);
    places.reserve(size_t(count));
    size_t size = table.size();
    while (size < 2 * size_t(count))
        size *= 2;
    if (size > table.size())
        resize(size);
}

void NodeTable::resize(size_t size)
{
    std::vector<Slot> smaller(size);
    smaller.swap(table);
    mask = size - 1;
    for (const Slot &slot : smaller) {
        if (slot.number >= 0)
            table[slotOf(created.at(slot.number)->id(), slot.hash)] = slot;
    }
}

void NodeTable::insert(PackageIndexNode *const *nodes, int count)
{
    std::array<quint32, nodesInBlock> hashes{};
    for (int first = 0; first < count; first += nodesInBlock) {
        const int end = qMin(count, first + nodesInBlock);
        for (int i = first; i < end; ++i)
            hashes[size_t(i - first)] = announce(nodes[i]->id());
        for (int i = first; i < end; ++i)
            insert(nodes[i], hashes[size_t(i - first)]);
    }
}

// The last node of an id wins, whatever kind an earlier one is of.
void NodeTable::insert(PackageIndexNode *node, quint32 hash)
{
    if (2 * (size_t(created.size()) + 1) > table.size())
        reserve(created.size() + 1);
    const QStringRef &id = node->id();
    if (!text)
        text = id.string();
    const size_t slot = slotOf(id, hash);
    const int known = table[slot].number;
    if (known >= 0) {
        places[size_t(known)].position = id.position();
        delete created.at(known);
        created[known] = node;
    } else if (isCrowded(hash, slot)) {
        qCWarning(lcPackageIndex) << "Too many ids with the hash of" << id;
        delete node;
    } else {
        table[slot] = {hash, created.size()};
        places.push_back({id.position(), id.size()});
        created.append(node);
    }
}

QVector<PackageIndexNode *> NodeTable::take()
{
    places.clear();
    std::vector<Slot>(table.size()).swap(table);
    return std::exchange(created, {});
}

PackageIndexNode *NodeTable::value(const QStringRef &id) const
{
    const int number = numberOf(id, hashOf(id));
    return number < 0 ? nullptr : created.at(number);
}

quint32 NodeTable::announce(const QStringRef &id) const
{
    const quint32 hash = hashOf(id);
    prefetch(&table[firstSlot(hash)]);
    return hash;
}

void NodeTable::approach(quint32 hash) const
{
    const int number = table[firstSlot(hash)].number;
    if (number < 0 || !text)
        return;
    prefetch(text->constData() + places[size_t(number)].position);
}

int NodeTable::numberOf(const QStringRef &id, quint32 hash) const
{
    return table[slotOf(id, hash)].number;
}

// Where \a id is, or where it would be entered.
size_t NodeTable::slotOf(const QStringRef &id, quint32 hash) const
{
    size_t slot = firstSlot(hash);
    while (table[slot].number >= 0 && !(table[slot].hash == hash && hasId(table[slot].number, id)))
        slot = (slot + 1) & mask;
    return slot;
}

bool NodeTable::hasId(int number, const QStringRef &id) const
{
    const Place &place = places[size_t(number)];
    return place.length == id.size()
           && (place.length == 0
               || std::memcmp(text->constData() + place.position, id.unicode(),
                              sizeof(QChar) * size_t(place.length))
                      == 0);
}

// Whether too many ids with that hash stand before the free slot \a end.
bool NodeTable::isCrowded(quint32 hash, size_t end) const
{
    int equal = 0;
    for (size_t slot = firstSlot(hash); slot != end; slot = (slot + 1) & mask)
        equal += table[slot].hash == hash ? 1 : 0;
    return equal >= mostOfOneHash;
}

} // namespace ts::pm
