#pragma once

#include "tamselpackagemanager_export.h"

#include <QJsonValue>
#include <QObject>
#include <QScopedPointer>
#include <QString>
#include <QVariant>

namespace ts::pm {

class ManifestFieldPrivate;
class PackageNode;

/**
 * Says which key of a manifest to read and how to turn its value into one that QML can bind to. This class
 * gives the JSON value as it is; subclasses give typed values with defaults.
 *
 * The same kind of object serves as a role of a PackageListModel and as a value of a PackageData.
 *
 * Ownership: models and PackageData do not own their fields.
 * Threads: repository thread only.
 * Signals: a setter emits the signal of its property, then updateRequested().
 * Errors: a missing value, or one of another type, gives the default.
 */
class TAMSELPACKAGEMANAGER_EXPORT ManifestField : public QObject
{
    Q_OBJECT
    /** Key in the manifest, and name of the role or value. Null at first. */
    Q_PROPERTY(QString name READ name WRITE setName NOTIFY nameChanged)

public:
    explicit ManifestField(QObject *parent = nullptr);
    ~ManifestField() override;

    QString name() const;
    void setName(const QString &name);

    /** The value in the manifest of \a node; what the class gives for no value if that is null. */
    QVariant read(const PackageNode *node) const;

    /** Turns the JSON value, of the manifest of \a node, into the value to show. \a node may be null. */
    virtual QVariant convert(const QJsonValue &value, const PackageNode *node) const;

    /** Whether PackageData shows the value only while the package is installed. */
    virtual bool isStatusDependent() const;

Q_SIGNALS:
    void nameChanged();
    void updateRequested();

private:
    QScopedPointer<ManifestFieldPrivate> d;
};

} // namespace ts::pm
