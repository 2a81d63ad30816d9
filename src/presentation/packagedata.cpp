#include "presentation/packagedata.h"
#include "presentation/packagedata_p.h"

#include "presentation/inturn_p.h"
#include "presentation/listelement_p.h"

#include <QSet>

namespace ts::pm {

namespace {

PackageDataPrivate *dataOf(QQmlListProperty<ManifestField> *list)
{
    return static_cast<PackageDataPrivate *>(list->data);
}

} // namespace

PackageDataPrivate::PackageDataPrivate(PackageData *q)
    : q(q)
    , map(new PackageManifestData(q))
{
}

void PackageDataPrivate::appendField(QQmlListProperty<ManifestField> *list, ManifestField *field)
{
    if (!belongsIn(list, field))
        return;
    PackageDataPrivate *d = dataOf(list);
    d->fields.append(field);
    d->queueFieldChange();
}

int PackageDataPrivate::fieldCount(QQmlListProperty<ManifestField> *list)
{
    return dataOf(list)->fields.size();
}

ManifestField *PackageDataPrivate::fieldAt(QQmlListProperty<ManifestField> *list, int index)
{
    return dataOf(list)->fields.value(index);
}

void PackageDataPrivate::clearFields(QQmlListProperty<ManifestField> *list)
{
    PackageDataPrivate *d = dataOf(list);
    if (d->fields.isEmpty())
        return;
    for (const QPointer<ManifestField> &field : qAsConst(d->fields)) {
        if (field)
            field->disconnect(d->q);
    }
    d->fields.clear();
    d->queueFieldChange();
}

void PackageDataPrivate::queueFieldChange()
{
    if (fieldsDirty)
        return;
    fieldsDirty = true;
    QMetaObject::invokeMethod(q, "processFieldChange", Qt::QueuedConnection);
}

// A file can be shown only once it is installed; a title or a size as soon as the package is known.
QVector<PackageDataPrivate::Value> PackageDataPrivate::readValues() const
{
    const bool installed = reference && reference->status() == PackageReference::Installed;
    // The index keeps the node while fields are read.
    const QSharedPointer<PackageIndex> index = reference ? reference->packageIndex() : nullptr;
    const PackageNode *node = reference ? reference->node() : nullptr;
    const QStringList keys = map->keys();
    QSet<QString> stale(keys.begin(), keys.end());
    QVector<Value> values;
    const QList<QPointer<ManifestField>> present = fields; // one that is read may delete all this
    for (const QPointer<ManifestField> &field : present) {
        if (!field)
            continue;
        stale.remove(field->name());
        const bool hidden = !installed && field->isStatusDependent();
        values.append({field->name(), field->read(hidden ? nullptr : node)});
    }
    for (const QString &key : qAsConst(stale))
        values.append({key, QVariant()});
    return values;
}

// Each value has listeners, who may change fields and reference, run an event loop or delete all this. So
// everything is read before the first of them hears, and an update that they cause takes the place of this
// one.
void PackageDataPrivate::update()
{
    const QPointer<PackageData> alive(q);
    const quint32 number = ++updates;
    const QVector<Value> values = readValues();
    for (auto value = values.begin(); value != values.end() && alive && number == updates; ++value)
        map->insert(value->first, value->second);
}

PackageData::PackageData(QObject *parent)
    : QObject(parent)
    , d(new PackageDataPrivate(this))
{
}

PackageData::~PackageData() = default;

PackageReference *PackageData::packageReference() const
{
    return d->reference;
}

void PackageData::setPackageReference(PackageReference *reference)
{
    if (d->reference == reference)
        return;
    if (d->reference)
        d->reference->disconnect(this);
    d->reference = reference;
    if (reference) {
        connect(reference, &PackageReference::statusChanged, this, &PackageData::update);
        connect(reference, &PackageReference::updated, this, &PackageData::update);
        connect(reference, &PackageReference::translationsChanged, this, &PackageData::update);
    }
    inTurn(this, &PackageData::packageReferenceChanged, &PackageData::update);
}

QQmlListProperty<ManifestField> PackageData::manifestFields()
{
    return QQmlListProperty<ManifestField>(this, d.data(), &PackageDataPrivate::appendField,
                                           &PackageDataPrivate::fieldCount, &PackageDataPrivate::fieldAt,
                                           &PackageDataPrivate::clearFields);
}

QQmlPropertyMap *PackageData::manifest() const
{
    return d->map;
}

void PackageData::classBegin() {}

void PackageData::componentComplete()
{
    processFieldChange();
}

// Runs twice for the fields of a component, which then update twice; the second time changes nothing.
void PackageData::processFieldChange()
{
    d->fieldsDirty = false;
    for (const QPointer<ManifestField> &field : qAsConst(d->fields)) {
        if (field)
            connect(field, &ManifestField::updateRequested, this, &PackageData::update);
    }
    update();
}

void PackageData::update()
{
    d->update();
}

} // namespace ts::pm
