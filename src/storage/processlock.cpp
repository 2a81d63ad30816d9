#include "storage/processlock_p.h"

#include <QFileInfo>
#include <QLockFile>

namespace ts::pm {

bool waitForLock(QLockFile &lock, const QString &path)
{
    const QFileInfo present(path);
    const bool isFree = !present.exists() && !present.isSymLink();
    return (isFree || present.isFile()) && lock.lock();
}

} // namespace ts::pm
