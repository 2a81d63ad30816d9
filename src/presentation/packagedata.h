#pragma once

#include "presentation/manifestfield.h"
#include "presentation/packagereference.h"
#include "tamselpackagemanager_export.h"

#include <QObject>
#include <QQmlListProperty>
#include <QQmlParserStatus>
#include <QQmlPropertyMap>
#include <QScopedPointer>

namespace ts::pm {

class PackageDataPrivate;

/**
 * Typed values from the manifest of one package, as a map that QML binds to: each ManifestField gives one
 * value of that name.
 *
 * Ownership: neither the reference nor the fields are owned; a reference that is destroyed reads as null.
 * Threads: repository thread only.
 * Signals: packageReferenceChanged() before the values change. manifestFieldsChanged() is declared, and on
 * purpose never emitted.
 * Errors: without a reference, or with a package that cannot be read, every field gives its default.
 */
class TAMSELPACKAGEMANAGER_EXPORT PackageData : public QObject, public QQmlParserStatus
{
    Q_OBJECT
    Q_INTERFACES(QQmlParserStatus)
    Q_CLASSINFO("DefaultProperty", "manifestFields")
    /** The package to read. Null at first. */
    Q_PROPERTY(ts::pm::PackageReference *packageReference READ packageReference WRITE setPackageReference
                   NOTIFY packageReferenceChanged)
    /** What to read. None at first. */
    Q_PROPERTY(QQmlListProperty<ts::pm::ManifestField> manifestFields READ manifestFields NOTIFY
                   manifestFieldsChanged)
    // Applications are not to hear of the name under clang's strict warnings.
#ifdef __clang__
#pragma clang diagnostic push
#pragma clang diagnostic ignored "-Wdollar-in-identifier-extension"
#endif
    /** The values, for reading: one that QML writes goes, and comes back with the next update. */
    Q_PROPERTY(QQmlPropertyMap *$ READ manifest CONSTANT)
#ifdef __clang__
#pragma clang diagnostic pop
#endif
    /** The same map as $. */
    Q_PROPERTY(QQmlPropertyMap *manifest READ manifest CONSTANT)

public:
    explicit PackageData(QObject *parent = nullptr);
    ~PackageData() override;

    PackageReference *packageReference() const;
    void setPackageReference(PackageReference *reference);

    QQmlListProperty<ManifestField> manifestFields();
    QQmlPropertyMap *manifest() const;

    void classBegin() override;
    void componentComplete() override;

Q_SIGNALS:
    void packageReferenceChanged();
    void manifestFieldsChanged();

private Q_SLOTS:
    void processFieldChange();
    void update();

private:
    QScopedPointer<PackageDataPrivate> d;
};

} // namespace ts::pm
