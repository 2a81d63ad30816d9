#include "index/packagesnapshot.h"

#include "index/packageindex.h"
#include "index/packagenode.h"

namespace ts::pm {

PackageSnapshot::PackageSnapshot(const QSharedPointer<PackageIndex> &index, PackageNode *node)
    : index(index)
    , node(node)
{
}

QJsonValue PackageSnapshot::manifestField(const QString &name) const
{
    return node ? node->readManifest(name) : QJsonValue(QJsonValue::Undefined);
}

QUrl PackageSnapshot::fileUrl(const QString &name) const
{
    return node ? node->getFileUrl(name) : QUrl();
}

} // namespace ts::pm
