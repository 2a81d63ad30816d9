#pragma once

#include "presentation/manifestfield.h"

namespace ts::pm {

/**
 * A field that names a file of the package; its value is the URL of the file. A PackageData shows it only
 * while the package is installed, a PackageListModel always.
 *
 * Ownership, threads and signals: as ManifestField.
 * Errors: anything but a text gives an empty URL.
 */
class TAMSELPACKAGEMANAGER_EXPORT ManifestFileField : public ManifestField
{
    Q_OBJECT

public:
    explicit ManifestFileField(QObject *parent = nullptr);
    ~ManifestFileField() override;

    QVariant convert(const QJsonValue &value, const PackageNode *node) const override;
    bool isStatusDependent() const override;
};

} // namespace ts::pm
