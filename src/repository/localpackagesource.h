#pragma once

#include "repository/packagesource.h"
#include "tamselpackagemanager_export.h"

#include <QScopedPointer>
#include <QString>

namespace ts::pm {

class LocalPackageSourcePrivate;

/**
 * Makes a directory tree on disk into a source: "packages/<type>/<id>/manifest.json" with the files of the
 * package beside it, "dictionary/<keyword id>.json" and "links/<any name>.json". docs/local-directory.md
 * describes the format.
 *
 * The tree is read anew for each index build. The source does not watch it: after a change, call
 * PackageRepository::scheduleUpdate(). Installed packages are links into the tree.
 *
 * Ownership: as PackageSource.
 * Threads: repository thread only.
 * Errors: none; a directory or file that cannot be read is missing from the index.
 */
class TAMSELPACKAGEMANAGER_EXPORT LocalPackageSource : public PackageSource
{
    Q_OBJECT

public:
    /** \a root is the directory that holds "packages", "dictionary" and "links". It need not exist. If it is
     * relative, it is looked for anew in the working directory of each index build. */
    explicit LocalPackageSource(const QString &root, QObject *parent = nullptr);
    ~LocalPackageSource() override;

    /** 3, the highest of all sources. */
    int priority() const override;
    PackageAccessor *getAccessor() const override;

private:
    QScopedPointer<LocalPackageSourcePrivate> d;
};

} // namespace ts::pm
