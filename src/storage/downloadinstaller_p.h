#pragma once

#include "storage/downloadinstaller.h"

#include <QHash>
#include <QUrl>
#include <QVector>

namespace ts::pm {

class FileStoreTarget;

struct DownloadInstaller::Download
{
    void dropTarget();
    QString downloadMessage() const;
    QString commitMessage(int result) const;

    QUrl url;
    QString fileId;
    Request *request = nullptr;        // null once it has ended
    FileStoreTarget *target = nullptr; // null once it has been dealt with, and after a failure
    int responseCode = 0;
    int error = 0;
    bool success = false;
};

class DownloadInstallerPrivate
{
public:
    struct File
    {
        QString path; // in the package
        QString id;
    };

    DownloadInstallerPrivate(const QSharedPointer<FileStore> &store, QCryptographicHash::Algorithm algorithm,
                             int firstCode);

    const QSharedPointer<FileStore> store;
    const QCryptographicHash::Algorithm algorithm;
    const int downloadError;
    const int commitError;
    const int installError;
    QVector<File> files;
    int pending = 0; // downloads that have not ended
    QHash<int, DownloadInstaller::Download> downloads;
};

} // namespace ts::pm

Q_DECLARE_TYPEINFO(ts::pm::DownloadInstallerPrivate::File, Q_MOVABLE_TYPE);
