#include "presentation/sortbystringfield.h"

#include "index/packagenode.h"

namespace ts::pm {

SortByStringField::SortByStringField(QObject *parent)
    : SortByField(parent)
{
}

std::function<bool(const PackageNode *, const PackageNode *)> SortByStringField::sortFunction() const
{
    if (name().isEmpty())
        return {};
    return [name = name()](const PackageNode *a, const PackageNode *b) {
        return a->readManifest(name).toString() < b->readManifest(name).toString();
    };
}

} // namespace ts::pm
