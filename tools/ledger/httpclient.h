#pragma once

#include <QByteArray>
#include <QNetworkAccessManager>
#include <QString>
#include <QUrl>

#include <functional>

namespace ts::ledger {

struct HttpAnswer
{
    int status = 0; ///< 0 if there was no answer
    QByteArray body;
    QString error; ///< why there was no whole answer; null if there was, whatever its status
};

/** A URL as messages show it, be it a good one or not: without user and password. Any thread. */
QString withoutLogin(const QString &url);

/** Exchanges with HTTP servers, one after the other, each waited for. One thread, on which events are
 * handled. */
class HttpClient
{
public:
    /** \a credentials as "user:password"; sent with every request if they are not empty. */
    explicit HttpClient(const QByteArray &credentials = {});

    /** Takes bytes of a body as they come. */
    using Taker = std::function<void(const QByteArray &bytes)>;

    /** \a json is the body of the request, if it has one. The answer has no body if \a taker takes it. */
    HttpAnswer exchange(const QByteArray &method, const QUrl &url, const QByteArray &json = {},
                        const Taker &taker = {});

private:
    QNetworkReply *send(const QByteArray &method, const QUrl &url, const QByteArray &json);

    QNetworkAccessManager manager;
    const QByteArray authorization; // value of the header; empty without credentials
};

} // namespace ts::ledger
