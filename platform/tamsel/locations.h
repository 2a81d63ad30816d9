#pragma once

#include "tamsel_export.h"

class QDir;

namespace ts {

/**
 * The directories that belong to the running application.
 *
 * Threads: process-wide, any thread. The directory is fixed by the first call of either function.
 * Errors: none here; whoever writes below the directory finds out whether it can.
 */
class TAMSEL_EXPORT Locations
{
public:
    /**
     * The application's writable data directory. Unless setDataLocation() came first, this is
     * QStandardPaths::AppDataLocation, so the application's name has to be set before the first call.
     * The directory need not exist.
     */
    static QDir dataLocation();

    /**
     * Uses \a directory, taken as an absolute path, as data directory.
     *
     * Returns false, and changes nothing, if the directory has been decided already: paths that were handed
     * out stay right for the life of the process.
     */
    [[nodiscard]] static bool setDataLocation(const QDir &directory);
};

} // namespace ts
