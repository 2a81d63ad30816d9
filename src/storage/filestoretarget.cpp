#include "storage/filestoretarget.h"

#include "logging_p.h"
#include "storage/digest_p.h"
#include "storage/filestore.h"
#include "storage/savefile_p.h"

#include <QFile>
#include <QSaveFile>

namespace ts::pm {

namespace {

// Results of commit().
constexpr int stored = 0;
constexpr int targetNotOpen = 1;
constexpr int checksumMismatch = 2;
constexpr int openFailed = 3;
constexpr int writeFailed = 4;
constexpr int commitFailed = 5;

} // namespace

FileStoreTarget::FileStoreTarget(FileStore *store, const QString &id, QCryptographicHash::Algorithm algorithm)
    : id(id)
    , path(store->pathForId(id))
    , algorithm(algorithm)
{
    setBuffer(&content);
}

FileStoreTarget::~FileStoreTarget() = default;

bool FileStoreTarget::open()
{
    return QBuffer::open(QIODevice::WriteOnly);
}

void FileStoreTarget::discardUnlessGenuine()
{
    verify();
    if (verdict == Forged)
        content = QByteArray();
}

int FileStoreTarget::commit()
{
    if (!isOpen())
        return targetNotOpen;
    close();
    // Taken as good unseen, which also makes two downloads of one file at the same time harmless.
    if (QFile::exists(path))
        return stored;
    verify();
    if (verdict == Forged) {
        qCCritical(lcPackageFileStore) << "Checksum verification of file ID" << id << "failed";
        return checksumMismatch;
    }
    return save();
}

void FileStoreTarget::verify()
{
    if (verdict == Unknown)
        verdict = matchesId() ? Genuine : Forged;
}

// An id of odd length is no digest, although fromHex() would make one of it, with a zero in front.
bool FileStoreTarget::matchesId() const
{
    return id.size() % 2 == 0 && digest(content, algorithm) == QByteArray::fromHex(id.toLatin1());
}

int FileStoreTarget::save() const
{
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly)) {
        qCCritical(lcPackageFileStore)
            << "Failed to open storage file for ID" << id << file.errorString() << file.error();
        return openFailed;
    }
    if (file.write(content) != content.size()) {
        qCCritical(lcPackageFileStore)
            << "Failed to write data to target file for ID" << id << file.errorString() << file.error();
        return writeFailed;
    }
    if (!commitFlushed(file)) {
        qCCritical(lcPackageFileStore)
            << "Failed to commit target file for ID" << id << file.errorString() << file.error();
        return commitFailed;
    }
    return stored;
}

} // namespace ts::pm
