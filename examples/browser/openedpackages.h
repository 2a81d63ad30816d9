#pragma once

#include "repositoryobserver.h"

#include <TamselPackageManager/PackageReference>

#include <QHash>

namespace browser {

/**
 * Remembers which packages have been opened, so that a grid can show where they stand without asking for
 * references, which would install every package that scrolls by.
 *
 * Ownership: as RepositoryObserver. The references belong to the repository.
 * Threads: the repository's thread.
 * Signals: revisionChanged() when any statusOf() may have changed.
 * Errors: none.
 */
class OpenedPackages : public RepositoryObserver
{
    Q_OBJECT
    /** Grows with each change. Bindings read it to be evaluated anew. */
    Q_PROPERTY(int revision READ revision NOTIFY revisionChanged)

public:
    explicit OpenedPackages(QObject *parent = nullptr);

    int revision() const { return changes; }

    /** The reference to a package, null without a repository. Starts to install the package. */
    Q_INVOKABLE ts::pm::PackageReference *open(const QString &id);

    /** The status of a package that has been opened, PackageReference::Unknown for any other. */
    Q_INVOKABLE int statusOf(const QString &id) const;

    /** The type of a package; null if the index does not have it. */
    Q_INVOKABLE QString typeOf(const QString &id) const;

Q_SIGNALS:
    void revisionChanged();

protected:
    void handleIndexChange() override;

private:
    void noteChange();

    QHash<QString, QPointer<ts::pm::PackageReference>> opened;
    int changes = 0;
};

} // namespace browser
