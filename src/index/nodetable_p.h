#pragma once

#include "index/keyedhash_p.h"

#include <QStringRef>
#include <QVector>

#include <vector>

namespace ts::pm {

class PackageIndexNode;

/**
 * The nodes of an index, by id and in order of creation.
 *
 * Looking up ids that lie all over the memory is mostly waiting for it. So this table is as small as it can
 * be, and the look-ups of a build are cut in three, so that the memory is fetched for many before anybody
 * waits for the first: announce() all, then approach() all, then numberOf() all.
 *
 * Ids may come from people who choose them so that their hashes collide. Hashes are therefore keyed by a
 * secret of this table; and should somebody find out, of ids with one hash only a few are taken.
 *
 * The ids of all nodes are references to one string, which may grow meanwhile.
 *
 * Ownership: owns the nodes, but not the string.
 * Threads: worker job only during the build, then immutable, any thread; take() while nobody else has the
 * table.
 */
class NodeTable
{
public:
    NodeTable();
    ~NodeTable();

    /** Makes room for \a count nodes in all. */
    void reserve(int count);

    /**
     * Takes \a count nodes. One that has the id of another takes its place and its number, and the other is
     * deleted. One whose id has the hash of too many others is logged and deleted.
     */
    void insert(PackageIndexNode *const *nodes, int count);

    /** Empties the table and returns the nodes, for the caller to delete. */
    [[nodiscard]] QVector<PackageIndexNode *> take();

    /** The nodes; the place of each is its number. */
    const QVector<PackageIndexNode *> &nodes() const { return created; }

    /** The node with \a id, null if there is none. */
    PackageIndexNode *value(const QStringRef &id) const;

    /** Whether the node of that number has \a id. */
    bool hasId(int number, const QStringRef &id) const;

    /** The hash of \a id, for the two steps that follow. */
    quint32 announce(const QStringRef &id) const;
    void approach(quint32 hash) const;

    /** The number of the node with \a id, or -1. */
    int numberOf(const QStringRef &id, quint32 hash) const;

private:
    struct Slot
    {
        quint32 hash;
        int number = -1;
    };
    struct Place // of an id in the string
    {
        int position;
        int length;
    };

    void resize(size_t size);
    void insert(PackageIndexNode *node, quint32 hash);
    quint32 hashOf(const QStringRef &id) const { return quint32(keyedHash(id)); }
    size_t firstSlot(quint32 hash) const { return hash & mask; }
    size_t slotOf(const QStringRef &id, quint32 hash) const;
    bool isCrowded(quint32 hash, size_t end) const;

    const KeyedHash keyedHash;
    const QString *text = nullptr;
    QVector<PackageIndexNode *> created;
    std::vector<Place> places; // of the ids of created nodes, here because the nodes themselves lie far apart
    std::vector<Slot> table;   // a power of two, at most half of it taken
    size_t mask = 0;
};

} // namespace ts::pm
