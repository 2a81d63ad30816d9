#pragma once

#include "presentation/packagedata.h"

#include <QList>
#include <QPair>
#include <QPointer>
#include <QVector>

namespace ts::pm {

/** The values of a PackageData. For reading: what QML writes is not stored. */
class PackageManifestData : public QQmlPropertyMap
{
public:
    explicit PackageManifestData(QObject *parent)
        : QQmlPropertyMap(parent)
    {
    }

protected:
    QVariant updateValue(const QString &key, const QVariant &input) override
    {
        Q_UNUSED(key)
        Q_UNUSED(input)
        return QVariant();
    }
};

// Repository thread only.
class PackageDataPrivate
{
public:
    explicit PackageDataPrivate(PackageData *q);

    static void appendField(QQmlListProperty<ManifestField> *list, ManifestField *field);
    static int fieldCount(QQmlListProperty<ManifestField> *list);
    static ManifestField *fieldAt(QQmlListProperty<ManifestField> *list, int index);
    static void clearFields(QQmlListProperty<ManifestField> *list);

    void queueFieldChange();
    void update();

    using Value = QPair<QString, QVariant>; // under its name in the map
    QVector<Value> readValues() const;

    PackageData *const q;
    QPointer<PackageReference> reference;
    PackageManifestData *const map; // child of q
    bool fieldsDirty = false;
    QList<QPointer<ManifestField>> fields; // not owned
    quint32 updates = 0;                   // so far
};

} // namespace ts::pm
