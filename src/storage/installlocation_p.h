#pragma once

#include "storage/installlocation.h"
#include "testexport_p.h"

namespace ts::pm {

/**
 * The directory of an install location, kept open while many files are installed: none of them costs the
 * system a walk down the whole path. What becomes of a file is what InstallLocation::installFile() tells.
 *
 * Threads: worker job only.
 */
class TAMSEL_TEST_EXPORT InstallDirectory
{
public:
    explicit InstallDirectory(const InstallLocation &location);
    ~InstallDirectory();

    /** As InstallLocation::installFile(). The first file makes the directory. */
    bool installFile(const QString &source, const QString &name);

private:
    Q_DISABLE_COPY(InstallDirectory)

    const InstallLocation location;
    int descriptor = -1; // of the directory, while it is open
};

} // namespace ts::pm
