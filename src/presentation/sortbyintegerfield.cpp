#include "presentation/sortbyintegerfield.h"

#include "index/packagenode.h"

namespace ts::pm {

SortByIntegerField::SortByIntegerField(QObject *parent)
    : SortByField(parent)
{
}

std::function<bool(const PackageNode *, const PackageNode *)> SortByIntegerField::sortFunction() const
{
    if (name().isEmpty())
        return {};
    return [name = name()](const PackageNode *a, const PackageNode *b) {
        return a->readManifest(name).toInt(0) < b->readManifest(name).toInt(0);
    };
}

} // namespace ts::pm
