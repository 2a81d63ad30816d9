#include "reversesorter.h"

namespace browser {

using ts::pm::PackageNode;

ReverseSorter::ReverseSorter(QObject *parent)
    : PackageSorter(parent)
{
}

void ReverseSorter::setSorter(ts::pm::PackageSorter *sorter)
{
    if (reversed == sorter)
        return;
    if (reversed)
        reversed->disconnect(this);
    reversed = sorter;
    if (reversed)
        connect(reversed, &PackageSorter::updateRequested, this, &PackageSorter::updateRequested);
    Q_EMIT sorterChanged();
    Q_EMIT updateRequested();
}

std::function<bool(const PackageNode *, const PackageNode *)> ReverseSorter::sortFunction() const
{
    const auto less =
        reversed ? reversed->sortFunction() : std::function<bool(const PackageNode *, const PackageNode *)>();
    if (!less)
        return {};
    return [less](const PackageNode *a, const PackageNode *b) { return less(b, a); };
}

} // namespace browser
