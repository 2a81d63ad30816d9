#pragma once

#include "index/packagelist.h"
#include "presentation/liststeps_p.h"

#include <QPair>
#include <QVector>

#include <atomic>
#include <memory>

namespace ts::pm {

/** Runs of adjacent row numbers, in the order in which they were added. Worker job only. */
class Ranges
{
public:
    /** Adds a row; one next to the row added before makes its run longer, in whichever direction. */
    void add(int index);

    /** Makes every run read from its lower to its higher row. */
    void sanitize();

    const QVector<QPair<int, int>> &pairs() const { return runs; }

private:
    QVector<QPair<int, int>> runs;
};

/** Set when nobody waits for the result of a job any more. */
using Superseded = std::shared_ptr<std::atomic<bool>>;

/**
 * Finds the steps that turn the rows of a model into a new list.
 *
 * Removals from the bottom up, insertions from the top down, then moves of single rows; one reset instead if
 * the lists belong to different indexes, whose nodes cannot be compared.
 *
 * Threads: worker job only; holds copies of all it needs.
 */
class PackageListDiff
{
public:
    PackageListDiff(PackageListModelPrivate *model, const PackageList &shown, const PackageList &selected);

    /**
     * The steps in the order in which they are to be run.
     *
     * Rows are never moved to row 0. A list that needs it gets no steps at all: the call then gives up its
     * place in the global thread pool and sleeps until \a superseded is set or the application quits.
     */
    QVector<ListStep> steps(const Superseded &superseded);

private:
    QVector<ListStep> removalOfAll() const;
    void recordRemovals();
    void recordInsertions();
    bool recordMoves();

    PackageListModelPrivate *const model;
    const PackageList shown;
    const PackageList selected;
    QVector<int> targets;              // by position in the index, the row in the new list, -1 for none
    QVector<const PackageNode *> work; // the rows as the steps recorded so far leave them
    QVector<ListStep> recorded;
};

} // namespace ts::pm
