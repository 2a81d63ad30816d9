#include "workingdir.h"

#include <QFile>
#include <QTemporaryDir>

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

namespace ts::util {

namespace {

/** Cleaners of temporary directories take what has not been used for days for abandoned, unless its directory
 * is locked. */
class LockedDirectory : public QTemporaryDir
{
public:
    LockedDirectory()
    {
        if (isValid())
            descriptor = ::open(QFile::encodeName(path()).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        if (descriptor >= 0)
            ::flock(descriptor, LOCK_SH | LOCK_NB); // not every file system has locks
    }
    ~LockedDirectory()
    {
        if (descriptor >= 0)
            ::close(descriptor);
    }

private:
    Q_DISABLE_COPY_MOVE(LockedDirectory)

    int descriptor = -1;
};

} // namespace

WorkingDir::WorkingDir()
    : directory(QSharedPointer<LockedDirectory>::create())
{
}

bool WorkingDir::isValid() const
{
    return directory->isValid();
}

QString WorkingDir::path() const
{
    return isValid() ? directory->path() : QString();
}

QString WorkingDir::filePath(const QString &name) const
{
    return isValid() ? directory->filePath(name) : QString();
}

} // namespace ts::util
