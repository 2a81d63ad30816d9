#include "database/documentpackageinstaller.h"

namespace ts::pm {

DocumentPackageInstaller::DocumentPackageInstaller(const InstallLocation &location)
    : PackageInstaller(location)
{
    finish();
}

} // namespace ts::pm
