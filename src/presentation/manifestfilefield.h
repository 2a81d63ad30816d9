#pragma once

#include "presentation/manifestfield.h"

namespace ts::pm {

/**
 * A field that names a file of the package; its value is the URL of the file, an empty one if there is no
 * such text. A PackageData shows it only while the package is installed, a PackageListModel always.
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
