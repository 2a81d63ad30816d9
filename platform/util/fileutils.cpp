#include "fileutils.h"

#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

namespace ts::util {

namespace {

// Where it cannot be asked, a file system flushes in its own time.
bool flush(int descriptor)
{
    int result = -1;
    do {
        result = ::fsync(descriptor);
    } while (result < 0 && errno == EINTR);
    return result == 0 || errno == EINVAL || errno == ENOSYS || errno == EOPNOTSUPP;
}

bool syncPath(const QString &path, int flags)
{
    const int descriptor = ::open(QFile::encodeName(path).constData(), flags | O_CLOEXEC);
    if (descriptor < 0)
        return false;
    const bool synced = flush(descriptor);
    return ::close(descriptor) == 0 && synced;
}

} // namespace

bool FileUtils::syncFile(const QString &path)
{
    return syncPath(path, O_RDONLY) && syncPath(QFileInfo(path).absolutePath(), O_RDONLY | O_DIRECTORY);
}

} // namespace ts::util
