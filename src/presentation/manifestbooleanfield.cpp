#include "presentation/manifestbooleanfield.h"

#include "presentation/inturn_p.h"

namespace ts::pm {

class ManifestBooleanFieldPrivate
{
public:
    bool defaultValue = false;
};

ManifestBooleanField::ManifestBooleanField(QObject *parent)
    : ManifestField(parent)
    , d(new ManifestBooleanFieldPrivate)
{
}

ManifestBooleanField::~ManifestBooleanField() = default;

bool ManifestBooleanField::defaultValue() const
{
    return d->defaultValue;
}

void ManifestBooleanField::setDefaultValue(bool value)
{
    if (d->defaultValue == value)
        return;
    d->defaultValue = value;
    inTurn(this, &ManifestBooleanField::defaultValueChanged, &ManifestBooleanField::updateRequested);
}

QVariant ManifestBooleanField::convert(const QJsonValue &value, const PackageNode *node) const
{
    Q_UNUSED(node)
    return value.toBool(d->defaultValue);
}

} // namespace ts::pm
