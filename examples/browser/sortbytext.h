#pragma once

#include <TamselPackageManager/SortByField>

namespace browser {

/**
 * Orders by a text of the translated manifest as a reader of the language expects it: without regard to case,
 * accented letters beside plain ones, numbers by value. Packages without such a text come last.
 *
 * Ownership, threads, errors: as ts::pm::SortByField.
 */
class SortByText : public ts::pm::SortByField
{
    Q_OBJECT

public:
    explicit SortByText(QObject *parent = nullptr);

    std::function<bool(const ts::pm::PackageNode *, const ts::pm::PackageNode *)>
    sortFunction() const override;
};

} // namespace browser
