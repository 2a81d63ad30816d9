#include "database/couchdbpackageinstaller.h"

#include "database/couchdburl_p.h"
#include "storage/filestore.h"

#include <Tamsel/GetRequest>

#include <QJsonObject>
#include <QNetworkRequest>

namespace ts::pm {

namespace {

constexpr int firstErrorCode = 1;
constexpr int digestPrefix = 3; // "md5"; the hyphen after it is no base64, and is passed over by the decoder

QString fileIdOf(const QJsonValue &attachment)
{
    const QString digest = attachment.toObject().value(QLatin1String("digest")).toString();
    return QString::fromLatin1(QByteArray::fromBase64(digest.mid(digestPrefix).toLatin1()).toHex());
}

} // namespace

CouchDBPackageInstaller::CouchDBPackageInstaller(const QUrl &baseUrl, QNetworkAccessManager *manager,
                                                 const QJsonObject &document,
                                                 const QSharedPointer<FileStore> &store,
                                                 const InstallLocation &location)
    : DownloadInstaller(store, QCryptographicHash::Md5, firstErrorCode, location)
{
    const QJsonObject attachments = document.value(QLatin1String("_attachments")).toObject();
    int number = 0;
    for (auto attachment = attachments.begin(); attachment != attachments.end(); ++attachment, ++number) {
        const QString fileId = fileIdOf(attachment.value());
        if (!addFile(attachment.key(), fileId))
            continue;
        const QUrl url = attachmentUrl(baseUrl, attachment.key());
        download(number, url.adjusted(QUrl::RemoveUserInfo), fileId, // what it is given goes to the log
                 new ts::GetRequest(QNetworkRequest(url), manager, this));
    }
    start();
}

} // namespace ts::pm
