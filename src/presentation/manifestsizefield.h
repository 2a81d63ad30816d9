#pragma once

#include "presentation/manifestfield.h"

#include <QSizeF>

namespace ts::pm {

class ManifestSizeFieldPrivate;

/**
 * A field that holds width and height as an array of two numbers. Negative numbers count as 0, further
 * elements are ignored.
 *
 * Ownership, threads and signals: as ManifestField.
 * Errors: anything else gives the default.
 */
class TAMSELPACKAGEMANAGER_EXPORT ManifestSizeField : public ManifestField
{
    Q_OBJECT
    /** 0 by 0 at first, which is a valid size. */
    Q_PROPERTY(QSizeF defaultValue READ defaultValue WRITE setDefaultValue NOTIFY defaultValueChanged)

public:
    explicit ManifestSizeField(QObject *parent = nullptr);
    ~ManifestSizeField() override;

    QSizeF defaultValue() const;
    void setDefaultValue(const QSizeF &value);

    QVariant convert(const QJsonValue &value, const PackageNode *node) const override;

Q_SIGNALS:
    void defaultValueChanged();

private:
    QScopedPointer<ManifestSizeFieldPrivate> d;
};

} // namespace ts::pm
