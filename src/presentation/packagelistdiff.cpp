#include "presentation/packagelistdiff_p.h"

#include "index/packagenode.h"
#include "presentation/moveplanner_p.h"

#include <QCoreApplication>
#include <QThread>
#include <QThreadPool>

#include <algorithm>

namespace ts::pm {

namespace {

constexpr unsigned long sleepTime = 50; // milliseconds between two looks at whether to go on waiting
constexpr int absent = -1;

void waitUntil(const std::atomic<bool> &superseded)
{
    QThreadPool *pool = QThreadPool::globalInstance();
    pool->releaseThread();
    while (!superseded && !QCoreApplication::closingDown())
        QThread::msleep(sleepTime);
    pool->reserveThread();
}

QVector<int> rowsByPosition(const PackageList &list, int positions)
{
    QVector<int> rows(positions, absent);
    for (int row = 0; row < list.size(); ++row)
        rows[list.at(row)->indexPosition()] = row;
    return rows;
}

int positionsIn(const PackageList &list)
{
    int positions = 0;
    for (const PackageNode *package : list)
        positions = std::max(positions, package->indexPosition() + 1);
    return positions;
}

} // namespace

void Ranges::add(int index)
{
    if (runs.isEmpty() || std::abs(runs.constLast().second - index) > 1)
        runs.append({index, index});
    else
        runs.last().second = index;
}

void Ranges::sanitize()
{
    for (QPair<int, int> &run : runs) {
        if (run.first > run.second)
            std::swap(run.first, run.second);
    }
}

PackageListDiff::PackageListDiff(PackageListModelPrivate *model, const PackageList &shown,
                                 const PackageList &selected)
    : model(model)
    , shown(shown)
    , selected(selected)
{
}

QVector<ListStep> PackageListDiff::steps(const Superseded &superseded)
{
    if (selected.index() != shown.index())
        return {ResetStep{model, selected}};
    if (selected.isEmpty())
        return removalOfAll();
    recordRemovals();
    recordInsertions();
    if (recordMoves())
        return recorded;
    waitUntil(*superseded);
    return {};
}

// Reads no node: rows without an index may belong to one that is gone. What is selected has no index then
// either, and so it is empty.
QVector<ListStep> PackageListDiff::removalOfAll() const
{
    if (shown.isEmpty())
        return {};
    return {RemoveStep{model, 0, shown.size() - 1}};
}

void PackageListDiff::recordRemovals()
{
    targets = rowsByPosition(selected, std::max(positionsIn(shown), positionsIn(selected)));
    const auto stays = [this](const PackageNode *package) {
        return targets.at(package->indexPosition()) != absent;
    };
    Ranges ranges;
    for (int row = shown.size() - 1; row >= 0; --row) {
        if (!stays(shown.at(row)))
            ranges.add(row);
    }
    ranges.sanitize();
    for (const QPair<int, int> &range : ranges.pairs())
        recorded.append(RemoveStep{model, range.first, range.second});
    std::copy_if(shown.begin(), shown.end(), std::back_inserter(work), stays);
}

// A package that is new takes its final row at once, since all that is inserted later goes below it; the
// packages that have stayed fill the rows between in their old order.
void PackageListDiff::recordInsertions()
{
    const QVector<int> oldRows = rowsByPosition(shown, targets.size());
    const QVector<const PackageNode *> stayed = work;
    work.resize(selected.size());
    Ranges ranges;
    int nextStayed = 0;
    for (int row = 0; row < selected.size(); ++row) {
        const bool isNew = oldRows.at(selected.at(row)->indexPosition()) == absent;
        if (isNew)
            ranges.add(row);
        work[row] = isNew ? selected.at(row) : stayed.at(nextStayed++);
    }
    for (const QPair<int, int> &range : ranges.pairs()) {
        const QVector<const PackageNode *> block =
            selected.nodes().mid(range.first, range.second - range.first + 1);
        recorded.append(InsertStep{model, PackageList(selected.index(), block), range.first});
    }
}

// Returns false if a row would have to move to row 0.
bool PackageListDiff::recordMoves()
{
    QVector<int> workTargets;
    workTargets.reserve(work.size());
    for (const PackageNode *package : qAsConst(work))
        workTargets.append(targets.at(package->indexPosition()));
    MovePlanner planner(workTargets);
    for (;;) {
        const MovePlanner::Move move = planner.next();
        if (move.from == move.to)
            return true;
        if (move.to == 0)
            return false;
        recorded.append(MoveStep{model, move.from, move.to});
        planner.apply(move);
    }
}

} // namespace ts::pm
