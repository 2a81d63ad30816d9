#include "ledger/httpclient.h"

#include <QEventLoop>
#include <QNetworkReply>
#include <QScopedPointer>
#include <QSslError>

namespace ts::ledger {

namespace {

constexpr int transferTimeout = 60000;          // milliseconds without a byte
constexpr qint64 largestBody = 0x7FFFFFFF - 64; // bytes after decompression, as many as a QByteArray holds

// Why a server's certificate is not believed; otherwise all that shows is that the handshake failed.
QString reasons(const QList<QSslError> &errors)
{
    QStringList texts;
    for (const QSslError &error : errors)
        texts.append(error.errorString());
    texts.removeDuplicates();
    return texts.join(QLatin1String("; "));
}

} // namespace

QString withoutLogin(const QString &url)
{
    const int at = url.lastIndexOf(QLatin1Char('@'));
    return at < 0 ? url : QLatin1String("...") + url.mid(at);
}

HttpClient::HttpClient(const QByteArray &credentials)
    : authorization(credentials.isEmpty() ? QByteArray() : "Basic " + credentials.toBase64())
{
    // Headers that are set by hand go along with a redirect, wherever it leads.
    manager.setRedirectPolicy(credentials.isEmpty() ? QNetworkRequest::NoLessSafeRedirectPolicy
                                                    : QNetworkRequest::SameOriginRedirectPolicy);
    manager.setTransferTimeout(transferTimeout);
}

QNetworkReply *HttpClient::send(const QByteArray &method, const QUrl &url, const QByteArray &json)
{
    QNetworkRequest request(url);
    if (!authorization.isEmpty())
        request.setRawHeader("Authorization", authorization);
    if (!json.isNull())
        request.setHeader(QNetworkRequest::ContentTypeHeader, QStringLiteral("application/json"));
    return manager.sendCustomRequest(request, method, json);
}

HttpAnswer HttpClient::exchange(const QByteArray &method, const QUrl &url, const QByteArray &json,
                                const Taker &taker)
{
    const QScopedPointer<QNetworkReply> reply(send(method, url, json));
    QEventLoop loop;
    QObject::connect(reply.data(), &QNetworkReply::finished, &loop, &QEventLoop::quit);
    QString distrust;
    QObject::connect(reply.data(), &QNetworkReply::sslErrors, &loop,
                     [&distrust](const QList<QSslError> &errors) { distrust = reasons(errors); });
    HttpAnswer answer;
    qint64 size = 0;
    bool isTooLarge = false;
    const auto take = [&] {
        isTooLarge = isTooLarge || size + reply->bytesAvailable() > largestBody;
        if (isTooLarge)
            return reply->abort();
        const QByteArray bytes = reply->readAll();
        size += bytes.size();
        if (taker)
            taker(bytes);
        else
            answer.body += bytes;
    };
    QObject::connect(reply.data(), &QNetworkReply::readyRead, &loop, take);
    loop.exec();
    take();
    answer.status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    // A status that tells of a failure is an answer as well; below it are failures of the connection.
    const bool answered = reply->error() == QNetworkReply::NoError || answer.status >= 400;
    const QString failure = distrust.isEmpty() ? reply->errorString() : distrust;
    if (isTooLarge || !answered)
        answer.error = QStringLiteral("%1: %2").arg(
            url.toString(QUrl::RemoveUserInfo | QUrl::RemoveQuery),
            isTooLarge ? QStringLiteral("more than %1 bytes").arg(largestBody) : failure);
    return answer;
}

} // namespace ts::ledger
