#pragma once

#include "storage/packageinstaller.h"

#include <QPointer>
#include <QVector>

namespace ts::pm {

class PackageInstallerPrivate
{
public:
    PackageInstallerPrivate(PackageInstaller *q, const InstallLocation &location);

    PackageInstaller::Status ownStatus() const;
    PackageInstaller::Status foldedStatus() const;
    void count(PackageInstaller::Status dependencyStatus, int change);
    bool refold();
    QVector<QPointer<PackageInstaller>> takeDependencies();
    void forget(PackageInstaller *dependency);
    /** Whether \a installer is this job, or one that it is a dependency of, directly or through others. */
    bool isBelow(const PackageInstaller *installer) const;

    PackageInstaller *const q;
    bool finished = false;
    PackageInstaller::Status status = PackageInstaller::Running;
    const InstallLocation location;
    QList<InstallError> errors;
    QList<PackageInstaller *> dependencies; // children of q

    // A tree can have as many members as a distribution has packages. Counting keeps a fold from asking each
    // of them again whenever one changes.
    PackageInstaller *dependent = nullptr; // the job that this one is a dependency of
    int runningDependencies = 0;
    int failedDependencies = 0;
};

} // namespace ts::pm
