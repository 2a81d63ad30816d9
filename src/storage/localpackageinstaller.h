#pragma once

#include "storage/packageinstaller.h"

class QDir;

namespace ts::pm {

/**
 * Installs a package that lies as a directory on the local disk.
 *
 * Each file that stands directly in the directory becomes visible in the location, apart from
 * "manifest.json", which the index holds already, and from hidden files; sub-directories are not followed.
 * Installed files are links wherever links can be made, so they follow later changes of the package's files.
 *
 * Ownership and threads: as PackageInstaller.
 * Errors: code 1, "Failed to install file %1", for each file that could not be installed.
 */
class TAMSELPACKAGEMANAGER_EXPORT LocalPackageInstaller : public PackageInstaller
{
    Q_OBJECT

public:
    /** Starts to install the files of \a directory into \a location. */
    LocalPackageInstaller(const QDir &directory, const InstallLocation &location);
    ~LocalPackageInstaller() override;
};

} // namespace ts::pm
