#include "relayedreply.h"

namespace ts::pm {

RelayedReply::RelayedReply(QNetworkAccessManager::Operation operation, const QNetworkRequest &request,
                           QObject *parent)
    : QNetworkReply(parent)
{
    setOperation(operation);
    setRequest(request);
    setUrl(request.url());
    open(QIODevice::ReadOnly | QIODevice::Unbuffered);
}

RelayedReply::~RelayedReply()
{
    if (sent)
        sent->deleteLater();
}

void RelayedReply::follow(QNetworkReply *reply)
{
    sent = reply;
    connect(reply, &QNetworkReply::metaDataChanged, this, [this] {
        takeMetaData();
        Q_EMIT metaDataChanged();
    });
    connect(reply, &QNetworkReply::readyRead, this, &QNetworkReply::readyRead);
    connect(reply, &QNetworkReply::downloadProgress, this, &QNetworkReply::downloadProgress);
    connect(reply, &QNetworkReply::uploadProgress, this, &QNetworkReply::uploadProgress);
    connect(reply, &QNetworkReply::errorOccurred, this,
            [this](NetworkError code) { fail(code, sent->errorString()); });
    connect(reply, &QNetworkReply::finished, this, [this] {
        takeMetaData();
        finish();
    });
}

void RelayedReply::abort()
{
    if (sent) {
        sent->abort();
        return;
    }
    if (isFinished())
        return;
    fail(OperationCanceledError, QStringLiteral("Operation canceled"));
    finish();
}

// Image gives up in this way, and then waits for the end.
void RelayedReply::close()
{
    abort();
    QNetworkReply::close();
}

qint64 RelayedReply::bytesAvailable() const
{
    return QNetworkReply::bytesAvailable() + (sent ? sent->bytesAvailable() : 0);
}

qint64 RelayedReply::readData(char *data, qint64 maxSize)
{
    return sent ? sent->read(data, maxSize) : 0;
}

void RelayedReply::takeMetaData()
{
    setUrl(sent->url());
    for (const RawHeaderPair &header : sent->rawHeaderPairs())
        setRawHeader(header.first, header.second);
    for (const auto attribute :
         {QNetworkRequest::HttpStatusCodeAttribute, QNetworkRequest::HttpReasonPhraseAttribute,
          QNetworkRequest::RedirectionTargetAttribute})
        setAttribute(attribute, sent->attribute(attribute));
}

void RelayedReply::fail(NetworkError code, const QString &text)
{
    setError(code, text);
    Q_EMIT errorOccurred(code);
}

void RelayedReply::finish()
{
    setFinished(true);
    Q_EMIT readChannelFinished();
    Q_EMIT finished();
}

} // namespace ts::pm
