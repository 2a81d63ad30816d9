#pragma once

#include "exchangequeue_p.h"
#include "inflater_p.h"
#include "request.h"

#include <QCryptographicHash>
#include <QIODevice>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QPointer>
#include <QStringList>
#include <QTimer>

#include <memory>

namespace ts {

/**
 * The exchange of a Request: one reply after the other, as redirects lead, until it is settled. It is in the
 * queue of the origin for as long as it has a reply that is under way, or waits for its turn to have one.
 *
 * Whatever happens, settle() comes once; it stops everything that could still come from the reply and lets
 * the event loop deliver the result.
 */
class RequestPrivate
{
public:
    RequestPrivate(Request *q, const QNetworkRequest &request, QNetworkAccessManager *manager);
    ~RequestPrivate();

    void send();
    void start();
    void explainHandshake();
    void loseManager();
    void readHead();
    void readBody();
    void endBody();
    void follow(const QUrl &target);
    void settle(QNetworkReply::NetworkError code, const QString &text);
    void deliver();
    void logFailure() const;
    void dropReply();
    void leaveQueue();

    QUrl redirectTarget() const;
    qint64 declaredSize() const;
    qint64 sizeLimit() const;
    bool isSuccess() const { return status >= 200 && status <= 299; }
    bool decode(const char *bytes, int size);
    bool consume(const char *bytes, int size);

    Request *q;
    QNetworkRequest request;
    QPointer<QNetworkAccessManager> manager;
    QPointer<ExchangeQueue> queue;   // null while this is not in it
    QMetaObject::Connection waiting; // tells that the queue has gone
    QPointer<QNetworkReply> reply;
    QPointer<QIODevice> sink;
    std::shared_ptr<Inflater> inflater; // null unless the body is compressed
    QCryptographicHash md5{QCryptographicHash::Md5};
    QTimer silence;
    QByteArray body;
    QString errorString;
    QStringList handshakeFaults;
    qint64 maximumSize;
    qint64 received = 0; // bytes of the body as they were sent
    qint64 size = 0;     // bytes of the body after decompression
    int error = QNetworkReply::NoError;
    int status = 0;
    int redirects = 0;
    bool hasSink = false; // stays true when the sink goes away
    bool suppressErrors = false;
    bool settled = false;
};

} // namespace ts
