#include "presentation/manifestsizefield.h"

#include "presentation/inturn_p.h"

#include <QJsonArray>

namespace ts::pm {

class ManifestSizeFieldPrivate
{
public:
    QSizeF defaultValue{0, 0};
};

ManifestSizeField::ManifestSizeField(QObject *parent)
    : ManifestField(parent)
    , d(new ManifestSizeFieldPrivate)
{
}

ManifestSizeField::~ManifestSizeField() = default;

QSizeF ManifestSizeField::defaultValue() const
{
    return d->defaultValue;
}

void ManifestSizeField::setDefaultValue(const QSizeF &value)
{
    if (d->defaultValue == value)
        return;
    d->defaultValue = value;
    inTurn(this, &ManifestSizeField::defaultValueChanged, &ManifestSizeField::updateRequested);
}

QVariant ManifestSizeField::convert(const QJsonValue &value, const PackageNode *node) const
{
    Q_UNUSED(node)
    const QJsonArray size = value.toArray();
    if (!size.at(0).isDouble() || !size.at(1).isDouble())
        return d->defaultValue;
    return QSizeF(qMax(0.0, size.at(0).toDouble()), qMax(0.0, size.at(1).toDouble()));
}

} // namespace ts::pm
