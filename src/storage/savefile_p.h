#pragma once

class QSaveFile;
class QString;

namespace ts::pm {

/**
 * Commits \a file, and unlike QSaveFile::commit() alone also notices that its last bytes could not be
 * written: Qt 5 forgets an error that shows only when the buffer is flushed, as on a full disk, or when the
 * storage is asked for its bytes, and puts a short file in place. Blocks until the storage has them.
 *
 * Returns false if the file at the target path is not the one that was written; error() and errorString() of
 * \a file say why, unless it was the storage, and its temporary file goes with it.
 */
[[nodiscard]] bool commitFlushed(QSaveFile &file);

/**
 * Removes what processes that were killed have left of a QSaveFile for \a path: files "NAME.XXXXXX" beside it
 * that nobody has written to for a day. Some file systems show such a file from the beginning, others only
 * for a moment of the commit.
 *
 * The caller holds the lock under which \a path is written, and uses no such name for anything else. Any
 * thread. A file that cannot be removed stays.
 */
void removeRemains(const QString &path);

} // namespace ts::pm
