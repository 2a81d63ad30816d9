#pragma once

#include "index/packagelist.h"

#include <QVector>

#include <functional>

namespace ts::pm {

class PackageListModelPrivate;

/**
 * One recorded change of a list model. Made on a worker, run on the model's thread, in the order of
 * recording. A step that does not fit the rows, as it may happen when they have been taken away meanwhile,
 * does nothing.
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
