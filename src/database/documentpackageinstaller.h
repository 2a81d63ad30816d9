#pragma once

#include "storage/packageinstaller.h"

namespace ts::pm {

/**
 * The install of a package that is a document: there is nothing to install, so it has succeeded from the
 * start, and emits no statusChanged().
 *
 * Ownership and threads: as PackageInstaller.
 * Errors: none.
 */
class DocumentPackageInstaller : public PackageInstaller
{
    Q_OBJECT

public:
    explicit DocumentPackageInstaller(const InstallLocation &location);
};

} // namespace ts::pm
