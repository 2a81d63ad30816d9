#include "storage/processlock_p.h"

#include <QFileInfo>
#include <QLockFile>

namespace ts::pm {

bool waitForLock(QLockFile &lock, const QString &path)
{
    const QFileInfo present(path);
    const bool isFree = !present.exists() && !present.isSymLink();
    // Where nobody can write, nobody can remove what a process that died has left either.
    const bool isWritable = QFileInfo(present.path()).isWritable();
    return (isFree || present.isFile()) && isWritable && lock.lock();
}

} // namespace ts::pm
