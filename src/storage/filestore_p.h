#pragma once

#include "storage/filestore.h"

#include <QDir>

namespace ts::pm {

/** The directory of the store, below the data location. */
QDir _storeDir();

class FileStorePrivate
{
public:
    FileStorePrivate(FileStore *q, const QDir &storeDir);

    void initStore();
    [[nodiscard]] QString makeDirectories() const;

    FileStore *const q;
    const QDir storeDir;
    const QString filesPath; // of the directory of all files, with a slash at the end
};

} // namespace ts::pm
