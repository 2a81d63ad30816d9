#include "repositoryobserver.h"

#include <TamselPackageManager/IPackageProvider>

namespace browser {

RepositoryObserver::RepositoryObserver(QObject *parent)
    : QObject(parent)
{
}

void RepositoryObserver::setPackageProvider(QObject *object)
{
    if (provider == object)
        return;
    provider = object;
    auto *usable = qobject_cast<ts::pm::IPackageProvider *>(object);
    setRepository(usable ? usable->packageRepository() : nullptr);
    Q_EMIT packageProviderChanged();
}

void RepositoryObserver::setRepository(ts::pm::PackageRepository *repository)
{
    if (observed == repository)
        return;
    if (observed)
        observed->disconnect(this);
    observed = repository;
    if (observed) {
        connect(observed, &ts::pm::PackageRepository::packageIndexChanged, this,
                &RepositoryObserver::handleIndexChange);
    }
    handleIndexChange();
}

QSharedPointer<ts::pm::PackageIndex> RepositoryObserver::index() const
{
    return observed ? observed->packageIndex() : QSharedPointer<ts::pm::PackageIndex>();
}

} // namespace browser
