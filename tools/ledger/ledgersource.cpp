#include "ledger/ledgersource.h"

#include "ledger/servertree.h"

#include <QEventLoop>
#include <QFile>
#include <QFileInfo>
#include <QNetworkAccessManager>
#include <QNetworkReply>

namespace ts::ledger {

namespace {

constexpr int transferTimeout = 30000; // milliseconds without a byte
constexpr int okStatus = 200;

QByteArray download(const QUrl &url, QString *error)
{
    QNetworkAccessManager manager;
    manager.setRedirectPolicy(QNetworkRequest::NoLessSafeRedirectPolicy);
    manager.setTransferTimeout(transferTimeout);
    const QScopedPointer<QNetworkReply> reply(manager.get(QNetworkRequest(url)));
    QEventLoop loop;
    QObject::connect(reply.data(), &QNetworkReply::finished, &loop, &QEventLoop::quit);
    loop.exec();
    const int status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    if (reply->error() == QNetworkReply::NoError && status == okStatus)
        return reply->readAll() + QByteArray("", 0);
    *error = QStringLiteral("%1: %2").arg(
        url.toString(), status == 0 || status == okStatus ? reply->errorString()
                                                          : QStringLiteral("answered with %1").arg(status));
    return QByteArray();
}

QByteArray readFile(const QString &path, QString *error)
{
    QFile file(path);
    if (file.open(QIODevice::ReadOnly))
        return file.readAll();
    *error = QStringLiteral("%1: %2").arg(path, file.errorString());
    return QByteArray();
}

} // namespace

LedgerSource::LedgerSource(const QString &place)
{
    if (place.startsWith(QLatin1String("http://")) || place.startsWith(QLatin1String("https://")))
        url = QUrl(place);
    else
        path = QFileInfo(place).isDir() ? ServerTree(place).ledger() : place;
}

QByteArray LedgerSource::ledger(QString *error) const
{
    return url.isEmpty() ? readFile(path, error) : download(url, error);
}

// Files lie beside the ledger on disk, and below its URL.
QByteArray LedgerSource::file(const QString &id, QString *error) const
{
    if (url.isEmpty())
        return readFile(QFileInfo(path).path() + QLatin1Char('/') + id, error);
    QUrl file(url);
    file.setPath(url.path() + QLatin1Char('/') + id);
    return download(file, error);
}

} // namespace ts::ledger
