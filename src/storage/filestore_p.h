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

    FileStore *const q;
    const QDir storeDir;
};

} // namespace ts::pm
