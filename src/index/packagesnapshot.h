#pragma once

#include "tamselpackagemanager_export.h"

#include <QJsonValue>
#include <QSharedPointer>
#include <QString>
#include <QUrl>

namespace ts::pm {

class PackageIndex;
class PackageNode;

/**
 * One package of one index, kept readable however many newer indexes come.
 *
 * A value, cheap to copy. A default-constructed snapshot is empty.
 *
 * Ownership: holds a share in the index.
 * Threads: immutable, any thread.
 */
class TAMSELPACKAGEMANAGER_EXPORT PackageSnapshot
{
public:
    PackageSnapshot() = default;
    /** \a node may be null, otherwise it belongs to \a index. */
    PackageSnapshot(const QSharedPointer<PackageIndex> &index, PackageNode *node);

    bool isEmpty() const { return !node; }

    /** As PackageNode::readManifest(); undefined for an empty snapshot. */
    QJsonValue manifestField(const QString &name) const;

    /** As PackageNode::getFileUrl(); an empty URL for an empty snapshot. */
    QUrl fileUrl(const QString &name) const;

private:
    QSharedPointer<PackageIndex> index;
    PackageNode *node = nullptr;
};

} // namespace ts::pm
