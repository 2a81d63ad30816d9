#include "openedpackages.h"

#include <TamselPackageManager/IPackageProvider>
#include <TamselPackageManager/PackageNode>

namespace browser {

using ts::pm::PackageReference;

OpenedPackages::OpenedPackages(QObject *parent)
    : RepositoryObserver(parent)
{
}

PackageReference *OpenedPackages::open(const QString &id)
{
    auto *provider = qobject_cast<ts::pm::IPackageProvider *>(packageProvider());
    PackageReference *reference = provider ? provider->packageReference(id) : nullptr;
    if (!reference || opened.value(id) == reference)
        return reference;
    opened.insert(id, reference);
    connect(reference, &PackageReference::statusChanged, this, &OpenedPackages::noteChange);
    noteChange();
    return reference;
}

int OpenedPackages::statusOf(const QString &id) const
{
    const QPointer<PackageReference> reference = opened.value(id);
    return reference ? reference->status() : PackageReference::Unknown;
}

QString OpenedPackages::typeOf(const QString &id) const
{
    const auto present = index();
    const ts::pm::PackageNode *package = present ? present->getPackage(QStringRef(&id)) : nullptr;
    return package ? package->type().toString() : QString();
}

void OpenedPackages::handleIndexChange()
{
    noteChange();
}

void OpenedPackages::noteChange()
{
    ++changes;
    Q_EMIT revisionChanged();
}

} // namespace browser
