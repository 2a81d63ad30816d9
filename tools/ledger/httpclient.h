#pragma once

#include <QByteArray>
#include <QNetworkAccessManager>
#include <QString>
#include <QUrl>

namespace ts::ledger {

struct HttpAnswer
{
    int status = 0; ///< 0 if there was no answer
    QByteArray body;
    QString error; ///< why there was no whole answer; null if there was, whatever its status
};

/** Exchanges with HTTP servers, one after the other, each waited for. One thread, on which events are
 * handled. */
class HttpClient
{
public:
    HttpClient();

    /** \a credentials as "user:password"; sent with every request if they are not empty. */
    void setCredentials(const QByteArray &credentials);

    /** \a json is the body of the request, if it has one. */
    HttpAnswer exchange(const QByteArray &method, const QUrl &url, const QByteArray &json = {});

private:
    QNetworkAccessManager manager;
    QByteArray authorization;
};

} // namespace ts::ledger
