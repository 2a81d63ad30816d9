#include "ledger/ledgersource.h"

#include "ledger/catalogue.h"
#include "ledger/filecopy.h"
#include "ledger/httpclient.h"
#include "ledger/servertree.h"

#include <QCryptographicHash>
#include <QFile>
#include <QFileInfo>

namespace ts::ledger {

namespace {

constexpr int okStatus = 200;

// Null, with what went wrong in \a error, if there is no good answer. As HttpClient::exchange() otherwise.
QByteArray download(const QUrl &url, QString *error, const HttpClient::Taker &taker = {})
{
    const HttpAnswer answer = HttpClient().exchange("GET", url, {}, taker);
    if (answer.status == okStatus && answer.error.isNull())
        return answer.body;
    *error = answer.error.isNull()
                 ? QStringLiteral("%1: answered with %2")
                       .arg(url.toString(QUrl::RemoveUserInfo), QString::number(answer.status))
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
    : place(place)
{
    if (place.startsWith(QLatin1String("http://")) || place.startsWith(QLatin1String("https://")))
        url = QUrl(place);
    else
        path = QFileInfo(place).isDir() ? ServerTree(place).ledger() : place;
}

QByteArray LedgerSource::ledger(QString *error) const
{
    if (!path.isEmpty())
        return readFile(path, error);
    if (url.isValid() && !url.host().isEmpty())
        return download(url, error);
    *error = QStringLiteral("%1: no URL of a ledger").arg(name());
    return QByteArray();
}

// Files lie beside the ledger on disk, and below its URL. They need not fit into the memory.
QByteArray LedgerSource::digestOf(const QString &id, QString *error) const
{
    constexpr auto algorithm = QCryptographicHash::Sha224;
    if (!path.isEmpty()) {
        const QFileInfo file(QFileInfo(path).path() + QLatin1Char('/') + id);
        if (file.size() <= largestFile)
            return FileCopy::digest(file.filePath(), algorithm, error);
        *error = QStringLiteral("%1 bytes; applications fetch at most %2").arg(file.size()).arg(largestFile);
        return QByteArray();
    }
    QUrl file(url);
    file.setPath(url.path(QUrl::FullyEncoded) + QLatin1Char('/') + id, QUrl::StrictMode);
    QCryptographicHash hash(algorithm);
    download(file, error, [&hash](const QByteArray &bytes) { hash.addData(bytes); });
    return hash.result();
}

QString LedgerSource::name() const
{
    return path.isEmpty() ? withoutLogin(place) : place;
}

} // namespace ts::ledger
