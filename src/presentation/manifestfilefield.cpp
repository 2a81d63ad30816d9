#include "presentation/manifestfilefield.h"

#include "index/packagenode.h"

namespace ts::pm {

ManifestFileField::ManifestFileField(QObject *parent)
    : ManifestField(parent)
{
}

ManifestFileField::~ManifestFileField() = default;

QVariant ManifestFileField::convert(const QJsonValue &value, const PackageNode *node) const
{
    return node && value.isString() ? node->getFileUrl(value.toString()) : QUrl();
}

bool ManifestFileField::isStatusDependent() const
{
    return true;
}

} // namespace ts::pm
