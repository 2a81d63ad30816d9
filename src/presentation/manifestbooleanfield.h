#pragma once

#include "presentation/manifestfield.h"

namespace ts::pm {

class ManifestBooleanFieldPrivate;

/**
 * A field that holds a boolean.
 *
 * Ownership, threads and signals: as ManifestField.
 * Errors: anything else gives the default.
 */
class TAMSELPACKAGEMANAGER_EXPORT ManifestBooleanField : public ManifestField
{
    Q_OBJECT
    /** False at first. */
    Q_PROPERTY(bool defaultValue READ defaultValue WRITE setDefaultValue NOTIFY defaultValueChanged)

public:
    explicit ManifestBooleanField(QObject *parent = nullptr);
    ~ManifestBooleanField() override;

    bool defaultValue() const;
    void setDefaultValue(bool value);

    QVariant convert(const QJsonValue &value, const PackageNode *node) const override;

Q_SIGNALS:
    void defaultValueChanged();

private:
    QScopedPointer<ManifestBooleanFieldPrivate> d;
};

} // namespace ts::pm
