#include "presentation/packagerows_p.h"

#include <algorithm>

namespace ts::pm {

void PackageRows::reset(const PackageList &list)
{
    ++changeCount;
    sharedIndex = list.index();
    indexOfLateRows.reset();
    places = list.nodes();
    gapStart = places.size();
    gapSize = 0;
}

void PackageRows::remove(int first, int last)
{
    ++changeCount;
    const int count = last - first + 1;
    moveGap(gapStart > last ? last + 1 : first);
    if (gapStart > last)
        gapStart -= count;
    gapSize += count;
}

void PackageRows::insert(int row, const PackageList &block)
{
    ++changeCount;
    if (!sharedIndex)
        indexOfLateRows = block.index();
    growGap(block.size());
    moveGap(row);
    std::copy(block.begin(), block.end(), places.begin() + gapStart);
    gapStart += block.size();
    gapSize -= block.size();
}

void PackageRows::move(int from, int to)
{
    ++changeCount;
    moveGap(size());
    const auto rows = places.begin();
    if (from < to)
        std::rotate(rows + from, rows + from + 1, rows + to + 1);
    else
        std::rotate(rows + to, rows + from, rows + from + 1);
}

PackageList PackageRows::toList()
{
    if (gapSize > 0) {
        moveGap(size());
        places.resize(gapStart);
        gapSize = 0;
    }
    return PackageList(sharedIndex, places);
}

void PackageRows::moveGap(int row)
{
    const auto begin = places.begin();
    if (gapSize > 0 && row < gapStart)
        std::move_backward(begin + row, begin + gapStart, begin + gapStart + gapSize);
    else if (gapSize > 0 && row > gapStart)
        std::move(begin + gapStart + gapSize, begin + row + gapSize, begin + gapStart);
    gapStart = row;
}

// Grows by a share of the rows, so that many small blocks do not each cost a copy.
void PackageRows::growGap(int needed)
{
    if (gapSize >= needed)
        return;
    moveGap(size());
    const int growth = qMax(needed - gapSize, size() / 2 + 16);
    places.resize(places.size() + growth);
    gapSize += growth;
}

} // namespace ts::pm
