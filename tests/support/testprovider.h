#pragma once

#include "repository/ipackageprovider.h"
#include "repository/packagerepository.h"

#include <QSignalSpy>

namespace ts::pm::test {

/** A provider with a repository of its own. */
class TestProvider : public QObject, public IPackageProvider
{
    Q_OBJECT
    Q_INTERFACES(ts::pm::IPackageProvider)

public:
    PackageRepository *packageRepository() const override { return repository; }
    PackageReference *packageReference(const QString &id) override
    {
        return repository->packageReference(id);
    }

    /** Builds a new index and waits until it is there. */
    [[nodiscard]] bool rebuild()
    {
        QSignalSpy changed(repository, &PackageRepository::packageIndexChanged);
        repository->update();
        return changed.wait();
    }

private:
    PackageRepository *const repository = new PackageRepository(PackageRepository::PersistOnRequest, this);
};

} // namespace ts::pm::test
