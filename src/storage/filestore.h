#pragma once

#include "tamselpackagemanager_export.h"

#include <QCryptographicHash>
#include <QObject>
#include <QScopedPointer>
#include <QSharedPointer>

namespace ts::pm {

class FileStorePrivate;
class FileStoreTarget;

/**
 * Keeps every downloaded file once, on disk, under the digest of its content.
 *
 * A file id is the hexadecimal form of the digest: 8 to 128 hexadecimal digits, in either case, both cases
 * naming the same file. The file with the id "abcdef01" lies at "packages/files/ab/cdef01" below the data
 * location. Presence of the file is the whole state: there is no index, nothing is verified again, nothing is
 * ever deleted.
 *
 * A download goes: contains(); if false, getTarget(); fill the target; FileStoreTarget::commit(); delete the
 * target.
 *
 * Ownership: shared, see defaultStore().
 * Threads: isValidId(), pathForId() and contains() on any thread; everything else on the thread that
 * downloads.
 * Errors: an invalid id gives an empty path, false or null, without a message. A data location in which the
 * store cannot make its directories ends the process.
 */
class TAMSELPACKAGEMANAGER_EXPORT FileStore : public QObject
{
    Q_OBJECT

public:
    FileStore();
    ~FileStore() override;

    /**
     * The store of this process, which lives for as long as somebody holds it and is made anew for the first
     * caller after that. Repository thread only.
     */
    static QSharedPointer<FileStore> defaultStore();

    bool isValidId(const QString &id) const;

    /** Absolute path of the file, whether or not it exists; empty for an invalid id. Touches no disk. */
    QString pathForId(const QString &id) const;

    bool contains(const QString &id) const;

    /**
     * A new target, open for writing, without a parent and owned by the caller; null for an invalid id. \a
     * algorithm is the one whose digest the id is. Makes the directories of the store again if they have gone
     * meanwhile.
     */
    FileStoreTarget *getTarget(const QString &id, QCryptographicHash::Algorithm algorithm);

private:
    QScopedPointer<FileStorePrivate> d;
};

} // namespace ts::pm
