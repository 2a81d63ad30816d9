#pragma once

#include <TamselPackageManager/PackageSorter>

#include <QPointer>

namespace browser {

/**
 * Turns another sorter's order around. Packages that are equal for it keep the order of the index.
 *
 * Ownership: does not own the other sorter.
 * Threads: as ts::pm::PackageSorter.
 * Errors: without a sorter the order of the index stays.
 */
class ReverseSorter : public ts::pm::PackageSorter
{
    Q_OBJECT
    Q_CLASSINFO("DefaultProperty", "sorter")
    Q_PROPERTY(ts::pm::PackageSorter *sorter READ sorter WRITE setSorter NOTIFY sorterChanged)

public:
    explicit ReverseSorter(QObject *parent = nullptr);

    ts::pm::PackageSorter *sorter() const { return reversed.data(); }
    void setSorter(ts::pm::PackageSorter *sorter);

    std::function<bool(const ts::pm::PackageNode *, const ts::pm::PackageNode *)>
    sortFunction() const override;

Q_SIGNALS:
    void sorterChanged();

private:
    QPointer<ts::pm::PackageSorter> reversed;
};

} // namespace browser
