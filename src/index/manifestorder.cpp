#include "index/manifestorder_p.h"

#include "index/packagenode.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace ts::pm {

namespace {

// What is missing or of another type counts as 0.
int integerOf(const PackageNode *package, const QString &name)
{
    return package->readManifest(name).toInt(0);
}

// What is missing or of another type counts as empty.
QString stringOf(const PackageNode *package, const QString &name)
{
    return package->readManifest(name).toString();
}

template<typename Read>
void sortBy(QVector<const PackageNode *> &packages, const Read &read)
{
    using Keyed = std::pair<decltype(read(packages.first())), const PackageNode *>;
    std::vector<Keyed> keyed;
    keyed.reserve(size_t(packages.size()));
    for (const PackageNode *package : qAsConst(packages))
        keyed.emplace_back(read(package), package);
    std::stable_sort(keyed.begin(), keyed.end(),
                     [](const Keyed &a, const Keyed &b) { return a.first < b.first; });
    std::transform(keyed.begin(), keyed.end(), packages.begin(),
                   [](const Keyed &entry) { return entry.second; });
}

} // namespace

ManifestOrder::ManifestOrder(const QString &name, ValueType type)
    : name(name)
    , type(type)
{
}

bool ManifestOrder::operator()(const PackageNode *a, const PackageNode *b) const
{
    return type == IntegerValue ? integerOf(a, name) < integerOf(b, name)
                                : stringOf(a, name) < stringOf(b, name);
}

void ManifestOrder::sort(QVector<const PackageNode *> &packages) const
{
    if (type == IntegerValue)
        sortBy(packages, [this](const PackageNode *package) { return integerOf(package, name); });
    else
        sortBy(packages, [this](const PackageNode *package) { return stringOf(package, name); });
}

} // namespace ts::pm
