#include "ledger/httpclient.h"

#include <QEventLoop>
#include <QNetworkReply>
#include <QScopedPointer>

namespace ts::ledger {

namespace {

constexpr int transferTimeout = 60000; // milliseconds without a byte

} // namespace

HttpClient::HttpClient()
{
    manager.setRedirectPolicy(QNetworkRequest::NoLessSafeRedirectPolicy);
    manager.setTransferTimeout(transferTimeout);
}

// Headers that are set by hand go along with a redirect, wherever it leads.
void HttpClient::setCredentials(const QByteArray &credentials)
{
    authorization = credentials.isEmpty() ? QByteArray() : "Basic " + credentials.toBase64();
    manager.setRedirectPolicy(credentials.isEmpty() ? QNetworkRequest::NoLessSafeRedirectPolicy
                                                    : QNetworkRequest::SameOriginRedirectPolicy);
}

HttpAnswer HttpClient::exchange(const QByteArray &method, const QUrl &url, const QByteArray &json)
{
    QNetworkRequest request(url);
    if (!authorization.isEmpty())
        request.setRawHeader("Authorization", authorization);
    if (!json.isNull())
        request.setHeader(QNetworkRequest::ContentTypeHeader, QStringLiteral("application/json"));
    const QScopedPointer<QNetworkReply> reply(manager.sendCustomRequest(request, method, json));
    QEventLoop loop;
    QObject::connect(reply.data(), &QNetworkReply::finished, &loop, &QEventLoop::quit);
    loop.exec();
    HttpAnswer answer;
    answer.status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    answer.body = reply->readAll();
    // A status that tells of a failure is an answer as well; below it are failures of the connection.
    const bool answered = reply->error() == QNetworkReply::NoError || answer.status >= 400;
    if (!answered)
        answer.error = QStringLiteral("%1: %2").arg(url.toString(QUrl::RemoveUserInfo), reply->errorString());
    return answer;
}

} // namespace ts::ledger
