#pragma once

#include "tamselpackagemanager_export.h"

#include <QDir>
#include <QSharedPointer>
#include <QString>

namespace ts::pm {

class InstallLocationRoot;

/**
 * A directory in which the files of installed packages are visible under their plain names.
 *
 * A value: a shared install root and a path below it. Every copy keeps the root, and with it the root's lock
 * file, alive; when the last copy goes, the lock is released and the directory stays on disk until a later
 * createRoot(), of this process or another, sweeps it away. A default-constructed location is null.
 *
 * Threads: immutable, any thread.
 * Errors: a directory that cannot be made or locked is logged in "tamsel.package.install"; file operations
 * tell by their result.
 * It does not remove or replace files, and carries nothing over from one root to the next.
 */
class TAMSELPACKAGEMANAGER_EXPORT InstallLocation
{
public:
    /** A null location. */
    InstallLocation();

    /** The place \a path, relative to \a root. Most callers want createRoot() and subLocation(). */
    InstallLocation(const QSharedPointer<InstallLocationRoot> &root, const QString &path);

    /**
     * Makes a new root with a random name below "packages/install" of the data location, locks it, and starts
     * a clean-up of stale roots on the global thread pool.
     *
     * The result is never null, also where the directory could not be made; installFile() then fails.
     */
    static InstallLocation createRoot();

    /** Whether this location has a root, that is, whether it is not null. */
    bool isValid() const;

    /** The place \a path below this one. Touches no disk. A null location gives a null location. */
    InstallLocation subLocation(const QString &path) const;

    /**
     * The directory of this location, made with all its parents if \a create is set and it does not exist;
     * none is made for a location that would lead out of the root. A QDir on an empty path for a null
     * location.
     */
    QDir directory(bool create) const;

    /**
     * Makes \a source visible as \a name in this location: as a symbolic link, or as a copy where links
     * cannot be made. A file that is already there is left as it is and counts as installed. Whether \a
     * source exists is not examined.
     *
     * Returns whether a file of that name is there now. An empty name is that of the directory itself, which
     * counts as there. False without touching the disk for a null location, and for names or locations that
     * would lead out of the root (absolute, "..", a drive, a NUL).
     */
    bool installFile(const QString &source, const QString &name) const;

    /** Whether a file of that name exists here. False for a null location, an empty or an unsafe name. */
    bool contains(const QString &name) const;

    /** The absolute path of an existing file, otherwise an empty string. */
    QString pathToFile(const QString &name) const;

private:
    friend class InstallDirectory;

    bool isInsideRoot(const QString &name) const;
    QString filePath(const QString &name) const;

    QSharedPointer<InstallLocationRoot> root;
    QString path;
};

} // namespace ts::pm
