#pragma once

#include <TamselPackageManager/PackageIndex>
#include <TamselPackageManager/PackageRepository>

#include <QObject>
#include <QPointer>
#include <QSharedPointer>

namespace browser {

/**
 * Base of the objects that show something about the whole catalogue and compute it anew with each index.
 *
 * Ownership: owns neither the provider nor its repository.
 * Threads: the repository's thread.
 * Errors: an object that is no package provider counts as null.
 */
class RepositoryObserver : public QObject
{
    Q_OBJECT
    /** An object that implements ts::pm::IPackageProvider. Null at first. */
    Q_PROPERTY(
        QObject *packageProvider READ packageProvider WRITE setPackageProvider NOTIFY packageProviderChanged)

public:
    QObject *packageProvider() const { return provider.data(); }
    void setPackageProvider(QObject *object);

    /** For users without a provider object. */
    void setRepository(ts::pm::PackageRepository *repository);

Q_SIGNALS:
    void packageProviderChanged();

protected:
    explicit RepositoryObserver(QObject *parent = nullptr);

    ts::pm::PackageRepository *repository() const { return observed.data(); }

    /** The current index, null without one. */
    QSharedPointer<ts::pm::PackageIndex> index() const;

    /** Called for each new index, and when the repository is another one. */
    virtual void handleIndexChange() = 0;

private:
    QPointer<QObject> provider;
    QPointer<ts::pm::PackageRepository> observed;
};

} // namespace browser
