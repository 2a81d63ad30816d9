#include "presentation/sortbystringfield.h"

#include "index/manifestorder_p.h"

namespace ts::pm {

SortByStringField::SortByStringField(QObject *parent)
    : SortByField(parent)
{
}

SortByStringField::~SortByStringField() = default;

std::function<bool(const PackageNode *, const PackageNode *)> SortByStringField::sortFunction() const
{
    if (name().isEmpty())
        return {};
    return ManifestOrder(name(), ManifestOrder::StringValue);
}

} // namespace ts::pm
