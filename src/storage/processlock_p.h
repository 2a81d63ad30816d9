#pragma once

class QLockFile;
class QString;

namespace ts::pm {

/**
 * Waits, without a limit, until this process has \a lock, whose file is \a path. False if it cannot have it:
 * the directory cannot be written to, or something is at the path that is no file, such as a directory, a
 * pipe or a link to nowhere, for which QLockFile itself would wait for ever. So it would for a file that a
 * process has left when it died, and that this one may not write to or cannot lock: that is removed after
 * QLockFile::staleLockTime(), or else there is no lock. Any thread.
 */
bool waitForLock(QLockFile &lock, const QString &path);

} // namespace ts::pm
