#include "index/packagenode.h"

#include "index/packageindex.h"
#include "repository/packageaccessor.h"
#include "storage/packageinstaller.h"

#include <QSet>
#include <QVector>

namespace ts::pm {

namespace {

struct InstallLevel
{
    const PackageNode *package;
    PackageInstaller *installer;
    int nextLink;
};

} // namespace

QString PackageNode::pathInLocation() const
{
    const QString directory = type().toString().replace(QLatin1Char(':'), QLatin1Char('/'));
    return QStringLiteral("%1/%2").arg(directory, id().toString());
}

InstallLocation PackageNode::installLocation() const
{
    return packageIndex()->installLocation().subLocation(pathInLocation());
}

PackageInstaller *PackageNode::startInstaller(const InstallLocation &location) const
{
    const InstallLocation base = location.isValid() ? location : packageIndex()->installLocation();
    return packageIndex()
        ->accessor(sourceIndex)
        ->packageInstaller(packageIndexInSource, base.subLocation(pathInLocation()));
}

// Depth first, in a loop of its own: chains of "requires" can be longer than a stack is deep.
PackageInstaller *PackageNode::install(const InstallLocation &location) const
{
    PackageInstaller *root = startInstaller(location);
    QSet<const PackageNode *> walked{this};
    QVector<InstallLevel> levels{{this, root, 0}};
    while (!levels.isEmpty()) {
        InstallLevel &level = levels.last();
        if (level.nextLink == level.package->outgoingLinks().size()) {
            levels.removeLast();
            continue;
        }
        const PackageIndexLink &link = level.package->outgoingLinks().at(level.nextLink++);
        const PackageNode *required = link.type == Requires ? link.node->toPackage() : nullptr;
        if (!required)
            continue;
        PackageInstaller *installer = required->startInstaller(location);
        level.installer->addDependency(installer);
        if (!walked.contains(required)) {
            walked.insert(required);
            levels.append({required, installer, 0});
        }
    }
    return root;
}

} // namespace ts::pm
