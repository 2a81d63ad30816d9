#pragma once

#include "storage/downloadinstaller.h"

#include <QHash>
#include <QMap>
#include <QUrl>

namespace ts::pm {

class FileStoreTarget;

struct DownloadInstaller::Download
{
    QString downloadMessage() const;
    QString commitMessage(int result) const;

    QUrl url;
    QString fileId;
    Request *request = nullptr;        // null once it has ended
    FileStoreTarget *target = nullptr; // null once it has been dealt with
    int responseCode = 0;
    int error = 0;
    bool success = false;
};

class DownloadInstallerPrivate
{
public:
    DownloadInstallerPrivate(const QSharedPointer<FileStore> &store, QCryptographicHash::Algorithm algorithm,
                             int firstCode);

    const QSharedPointer<FileStore> store;
    const QCryptographicHash::Algorithm algorithm;
    const int downloadError;
    const int commitError;
    const int installError;
    QMap<QString, QString> files; // path in the package to file id
    int pending = 0;              // downloads that have not ended
    QHash<int, DownloadInstaller::Download> downloads;
};

} // namespace ts::pm
