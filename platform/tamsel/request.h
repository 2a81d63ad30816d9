#pragma once

#include "tamsel_export.h"

#include <QByteArray>
#include <QObject>
#include <QScopedPointer>
#include <QString>

#include <chrono>

class QIODevice;
class QNetworkAccessManager;
class QNetworkReply;
class QNetworkRequest;

namespace ts {

class RequestPrivate;

/**
 * One HTTP exchange, from the moment it is made until its answer has arrived or failed.
 *
 * Ownership: belongs to its parent, and deletes itself once finished() has been delivered. Destroying it
 * earlier aborts the exchange without a signal. The data sink belongs to the caller, has to be open for
 * writing, and may go away at any time: the exchange then ends with an error.
 * Threads: lives on the thread of its access manager; all signals come there.
 * Signals: finished() comes exactly once, always from the event loop, never from a constructor or a setter.
 * Errors: no connection, a time-out, a body that is too large or ends too early, a sink that does not take
 * all bytes and an HTTP status of 400 or above all set error() and errorString(); a request with an error is
 * never isOk(). A chunked body that ends too early is the exception: Qt 5.15 may take it for complete, and
 * this class cannot tell.
 * It does not retry.
 *
 * Six exchanges of an access manager with one origin are under way at a time, which is what Qt has
 * connections for. The others wait for their turn in the order in which they were made.
 *
 * Redirects, up to ten, are followed only to the same or a safer scheme. Authorization and cookies do not go
 * along to another scheme, host or port. The answer may come compressed with gzip; sink, rawResponse(),
 * hash() and the largest size are about what comes out of it.
 */
class TAMSEL_EXPORT Request : public QObject
{
    Q_OBJECT

public:
    ~Request() override;

    /** Whether the caller reports a failure of this exchange; false at first. The log then tells of it at
     * debug level only, otherwise as a warning, both in "tamsel.request". */
    void setSuppressErrors(bool suppress);

    /**
     * Where the body goes as it arrives, if the status is between 200 and 299. Without a sink, and for every
     * other status, the body is kept in memory for rawResponse(). To be set before the event loop runs.
     */
    void setDataSink(QIODevice *sink);
    QIODevice *dataSink() const;

    /**
     * The longest time without a byte from the server before the exchange fails; 30 seconds at first. Counts
     * from when it is the turn of the exchange.
     */
    void setTransferTimeout(std::chrono::milliseconds timeout);

    /**
     * The largest body accepted, in bytes after decompression; 2 GiB less 65 bytes at first, which more than
     * that does not change. The body of a status outside 200 to 299 is not accepted beyond 1 MiB.
     */
    void setMaximumBodySize(qint64 bytes);

    /** True if the exchange has ended without error and with the HTTP status \a code. */
    bool isOk(int code) const;

    /** The HTTP status; 0 as long as there is none. */
    int responseCode() const;

    /** A QNetworkReply::NetworkError as a number; 0 is no error. */
    int error() const;

    /** The error for people, without the credentials of a URL; empty without one. */
    QString errorString() const;

    /** The body, unless it went to the data sink. */
    QByteArray rawResponse() const;

    /** MD5 digest (16 bytes) of the body that has been received, wherever it went. */
    QByteArray hash() const;

    /**
     * The reply, for its headers; its body has been read already. Owned by this object; null while the
     * exchange waits for its turn, if it could not be started, and once the access manager has gone.
     */
    QNetworkReply *reply() const;

Q_SIGNALS:
    void finished();

protected:
    /** A GET of \a request; fails from the event loop if \a manager is null or goes away. */
    Request(const QNetworkRequest &request, QNetworkAccessManager *manager, QObject *parent);

private:
    QScopedPointer<RequestPrivate> d;
};

} // namespace ts
