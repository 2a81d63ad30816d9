#pragma once

#include "tamselutil_export.h"

class QString;

namespace ts::util {

/** Operations on files that Qt does not offer. */
class TAMSELUTIL_EXPORT FileUtils
{
public:
    /**
     * Makes the present content of the file \a path, and its entry in the directory, survive a loss of power.
     *
     * Blocks until the storage has answered. Any thread. Returns false if the file or its directory cannot be
     * opened, or if the storage reports an error; the file itself is left as it is. Not every file system can
     * flush, a directory above all: what it cannot do is no error.
     */
    [[nodiscard]] static bool syncFile(const QString &path);
};

} // namespace ts::util
