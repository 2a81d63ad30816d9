#pragma once

#include "testexport_p.h"

#include <QDateTime>
#include <QDir>
#include <QScopedPointer>

class QLockFile;

namespace ts::pm {

/**
 * A locked directory of its own below "packages/install" of the data location.
 *
 * The lock is held from construction to destruction; the directory outlives the object.
 *
 * Threads: immutable, any thread. The directory is process-wide, locked by file.
 * Errors: a directory that cannot be made or locked is logged in "tamsel.package.install", and used all the
 * same.
 */
class InstallLocationRoot
{
public:
    InstallLocationRoot();
    ~InstallLocationRoot();

    const QDir &directory() const { return rootDirectory; }

private:
    Q_DISABLE_COPY(InstallLocationRoot)

    void create();
    void lock();

    QDir rootDirectory;
    QScopedPointer<QLockFile> lockFile; // null if the directory could not be made
};

/** The parent directory of all install roots, shared by all processes with one data location. */
TAMSEL_TEST_EXPORT QDir _installDir();

/**
 * Removes the install roots that nobody holds a lock on and that were more than five minutes old at \a now.
 * May run several times at once, in one process and in several. Worker job only.
 */
TAMSEL_TEST_EXPORT void cleanup(const QDateTime &now = QDateTime::currentDateTime());

} // namespace ts::pm
