#pragma once

#include "tamselpackagemanager_export.h"

#include <QBuffer>
#include <QByteArray>
#include <QCryptographicHash>
#include <QString>

namespace ts::pm {

class FileStore;

/**
 * A memory buffer that a download fills, and whose content enters the FileStore only if its digest is the
 * file id.
 *
 * Ownership: the caller's. A target that is never committed leaves no trace on disk.
 * Threads: the thread that downloads.
 * Errors: the result of commit().
 */
class TAMSELPACKAGEMANAGER_EXPORT FileStoreTarget : public QBuffer
{
    Q_OBJECT

public:
    FileStoreTarget(FileStore *store, const QString &id, QCryptographicHash::Algorithm algorithm);
    ~FileStoreTarget() override;

    using QBuffer::open;
    /** Opens the buffer for writing. */
    bool open();

    /**
     * Verifies the content against the id ahead of commit(), which then does not do it again, and lets go of
     * it if it is another one: a target that has to wait for its commit then holds only what can enter the
     * store. Nothing may be written any more.
     */
    void discardUnlessGenuine();

    /**
     * Closes the buffer, verifies it against the id and writes it to the store, atomically. A file that the
     * store has already is left as it is.
     *
     * Returns 0 if the file is in the store; 1 if the target was not open, which is the case after the first
     * commit; 2 if the digest is another one; 3, 4 or 5 if the file could not be opened, written or
     * committed. A full disk is a 4 or, if only the last bytes did not fit, a 5. Codes from 2 on are logged
     * in "tamsel.package.filestore", and nothing is left behind on disk.
     */
    [[nodiscard]] int commit();

private:
    enum Verdict { Unknown, Genuine, Forged };

    void verify();
    bool matchesId() const;
    int save() const;

    QString id;
    QString path;
    QByteArray content;
    QCryptographicHash::Algorithm algorithm;
    Verdict verdict = Unknown; // stands for the content, which may be gone
};

} // namespace ts::pm
