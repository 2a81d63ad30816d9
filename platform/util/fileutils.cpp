#include "fileutils.h"

#include <QFile>
#include <QFileInfo>

#include <fcntl.h>
#include <unistd.h>

namespace ts::util {

namespace {

bool syncPath(const QString &path, int flags)
{
    const int descriptor = ::open(QFile::encodeName(path).constData(), flags | O_CLOEXEC);
    if (descriptor < 0)
        return false;
    const bool synced = ::fsync(descriptor) == 0;
    return ::close(descriptor) == 0 && synced;
}

} // namespace

bool FileUtils::syncFile(const QString &path)
{
    return syncPath(path, O_RDONLY) && syncPath(QFileInfo(path).absolutePath(), O_RDONLY | O_DIRECTORY);
}

} // namespace ts::util
