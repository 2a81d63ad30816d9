#pragma once

#include "presentation/tracked_p.h"
#include "repository/ipackageprovider.h"
#include "repository/packagerepository.h"
#include "repository/providercast_p.h"

#include <QObject>
#include <QPointer>
#include <QSharedPointer>

namespace ts::pm {

/**
 * The "packageProvider" of one object of the user interface, and the repository behind it.
 *
 * Threads: repository thread only.
 */
class ProviderHandle
{
public:
    /** What becomes of an object that does not implement the interface. */
    enum UnusableObject { DropUnusable, KeepUnusable };

    bool is(const QObject *object) const { return provider.is(object); }
    QObject *object() const { return provider.get(); }

    /**
     * Replaces the provider: disconnects \a user from the old repository and connects its \a slot to changes
     * of the index of the new one. False if the provider, when it was asked, has destroyed \a user and with
     * it this handle, or has had another one assigned.
     */
    template<typename User, typename Slot>
    [[nodiscard]] bool assign(QObject *object, User *user, Slot slot, UnusableObject unusable)
    {
        if (repository)
            repository->disconnect(user);
        const IPackageProvider *usable = packageProviderCast(object);
        provider.set(usable || unusable == KeepUnusable ? object : nullptr);
        const QPointer<User> alive(user);
        const quint32 number = ++assignments;
        PackageRepository *replacement = usable ? usable->packageRepository() : nullptr;
        if (!alive || number != assignments)
            return false;
        repository = replacement;
        if (repository)
            QObject::connect(repository, &PackageRepository::packageIndexChanged, user, slot);
        return true;
    }

    /** The current index, null without a repository. */
    QSharedPointer<PackageIndex> packageIndex() const
    {
        return repository ? repository->packageIndex() : QSharedPointer<PackageIndex>();
    }

private:
    Tracked<QObject> provider;
    QPointer<PackageRepository> repository;
    quint32 assignments = 0; // so far
};

} // namespace ts::pm
