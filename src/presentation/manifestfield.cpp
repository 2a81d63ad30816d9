#include "presentation/manifestfield.h"

#include "index/packagenode.h"
#include "presentation/inturn_p.h"

namespace ts::pm {

class ManifestFieldPrivate
{
public:
    QString name;
};

ManifestField::ManifestField(QObject *parent)
    : QObject(parent)
    , d(new ManifestFieldPrivate)
{
}

ManifestField::~ManifestField() = default;

QString ManifestField::name() const
{
    return d->name;
}

void ManifestField::setName(const QString &name)
{
    if (d->name == name)
        return;
    d->name = name;
    inTurn(this, &ManifestField::nameChanged, &ManifestField::updateRequested);
}

QVariant ManifestField::read(const PackageNode *node) const
{
    return convert(node ? node->readManifest(d->name) : QJsonValue(QJsonValue::Undefined), node);
}

QVariant ManifestField::convert(const QJsonValue &value, const PackageNode *node) const
{
    Q_UNUSED(node)
    return QVariant(value);
}

bool ManifestField::isStatusDependent() const
{
    return false;
}

} // namespace ts::pm
