#pragma once

#include "presentation/sortbyfield.h"

namespace ts::pm {

/**
 * Orders by a whole number.
 *
 * Ownership, threads and signals: as PackageSorter.
 * Errors: a missing value, and anything but a 32-bit whole number, counts as 0.
 */
class TAMSELPACKAGEMANAGER_EXPORT SortByIntegerField : public SortByField
{
    Q_OBJECT

public:
    explicit SortByIntegerField(QObject *parent = nullptr);
    ~SortByIntegerField() override;

    std::function<bool(const PackageNode *, const PackageNode *)> sortFunction() const override;
};

} // namespace ts::pm
