#include "testprovider.h"

#include <QSignalSpy>

namespace ts::pm::test {

TestProvider::TestProvider(QObject *parent)
    : QObject(parent)
    , repository(new PackageRepository(PackageRepository::PersistOnRequest, this))
{
}

PackageRepository *TestProvider::packageRepository() const
{
    return repository;
}

PackageReference *TestProvider::packageReference(const QString &id)
{
    return repository->packageReference(id);
}

bool TestProvider::rebuild()
{
    QSignalSpy changed(repository, &PackageRepository::packageIndexChanged);
    repository->update();
    return changed.wait();
}

} // namespace ts::pm::test
