#pragma once

#include "index/packagelist.h"

#include <QSharedPointer>
#include <QVector>

namespace ts::pm {

/**
 * The rows of a list model.
 *
 * Keeps the free room where the last change took place, so that a row of changes in one direction, as a list
 * update makes them, moves each row at most once instead of all that follow for each change.
 *
 * Threads: repository thread only.
 */
class PackageRows
{
public:
    /** The index that the rows were reset to, held so that they stay valid; null if there was none. */
    const QSharedPointer<PackageIndex> &index() const { return sharedIndex; }

    int size() const { return places.size() - gapSize; }
    const PackageNode *at(int row) const { return places.at(row < gapStart ? row : row + gapSize); }

    /** How often the rows have changed, by any of the functions below. */
    quint32 changes() const { return changeCount; }

    /** Replaces all rows and the index. */
    void reset(const PackageList &list);

    /** Removes the rows \a first to \a last, both included. */
    void remove(int first, int last);

    /**
     * Puts \a block before \a row. It belongs to index(); if that is null, to the index of a list that was
     * taken away before this change of it came. That one is held too, without being index().
     */
    void insert(int row, const PackageList &block);

    /** Moves one row, so that it is row \a to afterwards. */
    void move(int from, int to);

    /** All rows, with a share in index() alone. Costs a copy only if rows change while the result is held. */
    PackageList toList();

private:
    void moveGap(int row);
    void growGap(int needed);

    QSharedPointer<PackageIndex> sharedIndex;
    QSharedPointer<PackageIndex> indexOfLateRows; // of blocks that were inserted without an index
    QVector<const PackageNode *> places;          // with the gap
    int gapStart = 0;
    int gapSize = 0;
    quint32 changeCount = 0;
};

} // namespace ts::pm
