#pragma once

#include <QString>
#include <QVector>

namespace ts::pm {

class PackageNode;

/**
 * A package order: ascending by one key of the manifest.
 *
 * PackageIndex::selectPackages() knows this order and reads each manifest once, before it sorts. That is
 * faster than two manifests for each comparison, and the texts cannot change under the sort when translations
 * do.
 *
 * Threads: immutable, any thread.
 */
class ManifestOrder
{
public:
    enum ValueType { IntegerValue, StringValue };

    ManifestOrder(const QString &name, ValueType type);

    bool operator()(const PackageNode *a, const PackageNode *b) const;

    /** Sorts stably. */
    void sort(QVector<const PackageNode *> &packages) const;

private:
    QString name;
    ValueType type;
};

} // namespace ts::pm
