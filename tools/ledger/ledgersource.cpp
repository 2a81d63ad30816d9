#include "ledger/ledgersource.h"

#include "ledger/httpclient.h"
#include "ledger/servertree.h"

#include <QFile>
#include <QFileInfo>

namespace ts::ledger {

namespace {

constexpr int okStatus = 200;

QByteArray download(const QUrl &url, QString *error)
{
    const QString place = url.isValid() ? url.toString(QUrl::RemoveUserInfo) : url.errorString();
    if (!url.isValid() || url.host().isEmpty()) {
        *error = QStringLiteral("%1: no URL of a ledger").arg(place);
        return QByteArray();
    }
    const HttpAnswer answer = HttpClient().exchange("GET", url);
    if (answer.status == okStatus && answer.error.isNull())
        return answer.body + QByteArray("", 0);
    *error = answer.error.isNull() ? QStringLiteral("%1: answered with %2").arg(place).arg(answer.status)
                                   : answer.error;
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
