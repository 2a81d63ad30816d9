#pragma once

#include "tamselutil_export.h"

#include <QSharedPointer>
#include <QString>

class QTemporaryDir;

namespace ts::util {

/**
 * A private scratch directory that several owners can share.
 *
 * A value: copies name the same directory, which is removed with everything in it when the last copy goes. It
 * is locked until then, for which it has a descriptor open.
 *
 * Threads: one copy per thread; copies of one directory may live on different threads.
 * Errors: if the directory cannot be made, isValid() is false and path() is empty.
 */
class TAMSELUTIL_EXPORT WorkingDir
{
public:
    /** Makes a new, empty directory that only the current user can enter. */
    WorkingDir();

    bool isValid() const;

    /** Absolute path of the directory, without a slash at its end. */
    QString path() const;

    /** Absolute path of \a name in the directory, whether it exists or not; empty if isValid() is false. */
    QString filePath(const QString &name) const;

private:
    QSharedPointer<QTemporaryDir> directory;
};

} // namespace ts::util
