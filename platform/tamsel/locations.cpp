#include "locations.h"

#include <QDir>
#include <QStandardPaths>

namespace ts {

namespace {

// The first caller decides; the initialisation of a function-local static is what makes that thread-safe.
const QString &decidedPath(const QString &wanted)
{
    static const QString path =
        wanted.isEmpty() ? QStandardPaths::writableLocation(QStandardPaths::AppDataLocation) : wanted;
    return path;
}

} // namespace

QDir Locations::dataLocation()
{
    return QDir(decidedPath(QString()));
}

bool Locations::setDataLocation(const QDir &directory)
{
    const QString wanted = directory.absolutePath();
    return decidedPath(wanted) == wanted;
}

} // namespace ts
