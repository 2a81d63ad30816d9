#pragma once

#include "presentation/packagematcher.h"

#include <QScopedPointer>
#include <QString>

namespace ts::pm {

class HasManifestFieldPrivate;

/**
 * Takes the packages whose manifest has one key, whatever its value: null and an empty text count.
 *
 * Ownership, threads and errors: as PackageMatcher.
 */
class TAMSELPACKAGEMANAGER_EXPORT HasManifestField : public PackageMatcher
{
    Q_OBJECT
    /** The key. Empty, as at first, it restricts nothing. */
    Q_PROPERTY(QString name READ name WRITE setName NOTIFY nameChanged)

public:
    explicit HasManifestField(QObject *parent = nullptr);
    ~HasManifestField() override;

    QString name() const;
    void setName(const QString &name);

    std::function<bool(PackageNode *)> matchFunction() const override;

Q_SIGNALS:
    void nameChanged();

private:
    QScopedPointer<HasManifestFieldPrivate> d;
};

} // namespace ts::pm
