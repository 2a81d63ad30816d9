#pragma once

#include <TamselPackageManager/PackageAccessor>
#include <TamselPackageManager/PackageIndex>
#include <TamselPackageManager/PackageSource>

#include <QSharedPointer>
#include <QVector>

namespace ts::pm::bench {

/**
 * A made-up catalogue, always the same for one size: packages of a dozen types with seven links each, and for
 * every hundred packages one keyword, in German and English.
 */
struct SyntheticCatalogue
{
    explicit SyntheticCatalogue(int packageCount);

    QVector<PackageInfo> packages;
    QVector<KeywordInfo> keywords;
    QVector<LinkInfo> links;
};

/** The sizes that the benchmarks run with. */
constexpr int sizes[] = {10000, 63000, 250000};

/** The catalogue of that size, made at the first call. */
const SyntheticCatalogue &syntheticCatalogue(int packageCount);

/** Offers a synthetic catalogue from memory. */
class SyntheticSource : public PackageSource
{
    Q_OBJECT

public:
    explicit SyntheticSource(int packageCount);

    int priority() const override;
    PackageAccessor *getAccessor() const override;

private:
    const SyntheticCatalogue &catalogue;
};

/** The built index of the catalogue of that size, kept from the first call on. */
QSharedPointer<PackageIndex> syntheticIndex(int packageCount);

} // namespace ts::pm::bench
