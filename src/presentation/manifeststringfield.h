#pragma once

#include "presentation/manifestfield.h"

namespace ts::pm {

class ManifestStringFieldPrivate;

/**
 * A field that holds a text.
 *
 * Ownership, threads and signals: as ManifestField.
 * Errors: anything else gives the default.
 */
class TAMSELPACKAGEMANAGER_EXPORT ManifestStringField : public ManifestField
{
    Q_OBJECT
    /** Null at first. */
    Q_PROPERTY(QString defaultValue READ defaultValue WRITE setDefaultValue NOTIFY defaultValueChanged)

public:
    explicit ManifestStringField(QObject *parent = nullptr);
    ~ManifestStringField() override;

    QString defaultValue() const;
    void setDefaultValue(const QString &value);

    QVariant convert(const QJsonValue &value, const PackageNode *node) const override;

Q_SIGNALS:
    void defaultValueChanged();

private:
    QScopedPointer<ManifestStringFieldPrivate> d;
};

} // namespace ts::pm
