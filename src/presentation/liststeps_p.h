#pragma once

#include "index/packagelist.h"

#include <QVector>

#include <functional>

namespace ts::pm {

class PackageListModelPrivate;

/**
 * One recorded change of a list model. A step that does not fit the rows, as it may happen when they have
 * been taken away meanwhile, does nothing.
 *
 * Ownership: the model is not owned, and has to be there when the step is run.
 * Threads: made by a worker job; run on the repository thread only, in the order of recording.
 */
using ListStep = std::function<void()>;

/** Replaces all rows and the index. */
struct ResetStep
{
    PackageListModelPrivate *model;
    PackageList list;

    void operator()() const;
};

/** Removes the rows from first to last, both included. */
struct RemoveStep
{
    PackageListModelPrivate *model;
    int first;
    int last;

    void operator()() const;
};

/** Inserts a block of packages before a row. */
struct InsertStep
{
    PackageListModelPrivate *model;
    PackageList block;
    int position;

    void operator()() const;
};

/** Moves one row, so that it is row to afterwards. */
struct MoveStep
{
    PackageListModelPrivate *model;
    int from;
    int to;

    void operator()() const;
};

} // namespace ts::pm
