#pragma once

#include <QStringRef>

#include <vector>

namespace ts::pm {

/**
 * Finds the number of a node by its id while an index is built.
 *
 * Looking up ids that lie all over the memory is mostly waiting for it. So this table lies in one piece, and
 * a look-up is cut in three, so that a caller with many of them can have the memory fetched for all before it
 * waits for the first: announce() all, then approach() all, then find() all.
 *
 * Ids may come from people who choose them so that their hashes collide. Where a hash leads to is therefore a
 * secret of this table, and of ids with one and the same hash only a few are taken.
 *
 * All ids are references to one string, which may grow meanwhile.
 */
class NodeNumbers
{
public:
    NodeNumbers();

    /** Makes room for \a count ids in all. */
    void reserve(int count);

    /**
     * Enters \a id with \a number, unless it is there already. Returns the number that it has now, -1 if it
     * is not taken.
     */
    int insert(const QStringRef &id, int number);

    /** The hash of \a id, for the two steps that follow. */
    quint32 announce(const QStringRef &id) const;
    void approach(quint32 hash) const;

    /** The number of \a id, or -1. */
    int find(const QStringRef &id, quint32 hash) const;

private:
    struct Slot
    {
        quint32 hash;
        int position; // of the id in the string
        int length;
        int number = -1;
    };

    quint32 hashOf(const QStringRef &id) const;
    size_t placeOf(quint32 hash) const { return size_t((hash * secret) >> shift); }
    bool isCrowded(quint32 hash, size_t end) const;
    size_t slotOf(const QStringRef &id, quint32 hash) const;

    const quint64 secret; // odd
    const QString *text = nullptr;
    std::vector<Slot> table; // a power of two, at most half of it taken
    size_t mask = 0;
    int shift = 63; // leaves as many bits as the mask has
    size_t taken = 0;
};

} // namespace ts::pm
