#include "presentation/sortbyintegerfield.h"

#include "index/manifestorder_p.h"

namespace ts::pm {

SortByIntegerField::SortByIntegerField(QObject *parent)
    : SortByField(parent)
{
}

SortByIntegerField::~SortByIntegerField() = default;

std::function<bool(const PackageNode *, const PackageNode *)> SortByIntegerField::sortFunction() const
{
    if (name().isEmpty())
        return {};
    return ManifestOrder(name(), ManifestOrder::IntegerValue);
}

} // namespace ts::pm
