#include "locations.h"

#include <QDir>
#include <QStandardPaths>

namespace ts {

namespace {

// The first caller decides; the initialisation of a function-local static is what makes that thread-safe. The
// environment may name a relative path, and applications change their working directory.
const QString &decidedPath(const QString &wanted)
{
    static const QString path =
        QDir(wanted.isEmpty() ? QStandardPaths::writableLocation(QStandardPaths::AppDataLocation) : wanted)
            .absolutePath();
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
