#pragma once

#include "repository/ipackageprovider.h"
#include "repository/packagerepository.h"

#include <QObject>

namespace ts::pm::test {

/** A provider with a repository of its own. */
class TestProvider : public QObject, public IPackageProvider
{
    Q_OBJECT
    Q_INTERFACES(ts::pm::IPackageProvider)

public:
    explicit TestProvider(QObject *parent = nullptr);

    PackageRepository *packageRepository() const override;
    PackageReference *packageReference(const QString &id) override;

    /** Builds a new index and waits until it is there. */
    [[nodiscard]] bool rebuild();

private:
    PackageRepository *const repository;
};

} // namespace ts::pm::test
