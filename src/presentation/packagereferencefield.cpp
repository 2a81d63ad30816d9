#include "presentation/packagereferencefield.h"
#include "presentation/packagereferencefield_p.h"

#include "presentation/packagereference.h"

#include <TamselDataCore/LinkedDocument>

#include <QVariant>

namespace ts::pm {

namespace {

QVariant noDocument()
{
    return QVariant::fromValue<ts::data::LinkedDocument *>(nullptr);
}

} // namespace

bool PackageReferenceFieldPrivate::isAccepted(PackageReference *reference) const
{
    Q_UNUSED(reference)
    return true;
}

PackageReferenceField::PackageReferenceField(QObject *parent)
    : DataField(parent)
    , d(new PackageReferenceFieldPrivate{this, {}})
{
}

PackageReferenceField::~PackageReferenceField() = default;

QStringList PackageReferenceField::acceptedTypes() const
{
    return d->acceptedTypes;
}

void PackageReferenceField::setAcceptedTypes(const QStringList &types)
{
    if (d->acceptedTypes == types)
        return;
    d->acceptedTypes = types;
    Q_EMIT acceptedTypesChanged();
}

bool PackageReferenceField::compare(const QVariant &a, const QVariant &b) const
{
    return a.value<QObject *>() == b.value<QObject *>();
}

// What is no package comes out as a document of null, and callers look for the null alone.
QVariant PackageReferenceField::convert(const QVariant &value) const
{
    if (!value.canConvert<PackageReference *>())
        return noDocument();
    return QVariant::fromValue(value.value<PackageReference *>());
}

QVariant PackageReferenceField::read(ts::data::LinkedDocument *document, const QString &path) const
{
    if (!document)
        return noDocument();
    const QString text = document->getStructValue(path, name()).toString();
    return QVariant::fromValue(qobject_cast<PackageReference *>(document->decodeReference(text)));
}

void PackageReferenceField::write(ts::data::LinkedDocument *document, const QString &path,
                                  const QVariant &value)
{
    if (!document)
        return;
    const QString encoded = document->encodeReference(value.value<QObject *>());
    document->setStructValue(path, name(),
                             encoded.isEmpty() ? QJsonValue(QJsonValue::Undefined) : QJsonValue(encoded));
}

} // namespace ts::pm
