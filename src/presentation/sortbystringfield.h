#pragma once

#include "presentation/sortbyfield.h"

namespace ts::pm {

/**
 * Orders by a text of the translated manifest, by UTF-16 code units: capitals before small letters, not by
 * the rules of a locale.
 *
 * Ownership, threads and signals: as PackageSorter.
 * Errors: a missing value, and anything but a text, counts as empty and comes first.
 */
class TAMSELPACKAGEMANAGER_EXPORT SortByStringField : public SortByField
{
    Q_OBJECT

public:
    explicit SortByStringField(QObject *parent = nullptr);
    ~SortByStringField() override;

    std::function<bool(const PackageNode *, const PackageNode *)> sortFunction() const override;
};

} // namespace ts::pm
