#include "presentation/manifeststringfield.h"

#include "presentation/inturn_p.h"

namespace ts::pm {

class ManifestStringFieldPrivate
{
public:
    QString defaultValue;
};

ManifestStringField::ManifestStringField(QObject *parent)
    : ManifestField(parent)
    , d(new ManifestStringFieldPrivate)
{
}

ManifestStringField::~ManifestStringField() = default;

QString ManifestStringField::defaultValue() const
{
    return d->defaultValue;
}

void ManifestStringField::setDefaultValue(const QString &value)
{
    if (d->defaultValue == value)
        return;
    d->defaultValue = value;
    inTurn(this, &ManifestStringField::defaultValueChanged, &ManifestStringField::updateRequested);
}

QVariant ManifestStringField::convert(const QJsonValue &value, const PackageNode *node) const
{
    Q_UNUSED(node)
    return value.isString() ? value.toString() : d->defaultValue;
}

} // namespace ts::pm
