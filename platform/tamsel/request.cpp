#include "request.h"

#include "request_p.h"

namespace ts {

Request::Request(const QNetworkRequest &request, QNetworkAccessManager *manager, QObject *parent)
    : QObject(parent)
    , d(new RequestPrivate(this, request, manager))
{
    d->send();
}

Request::~Request() = default;

void Request::setSuppressErrors(bool suppress)
{
    d->suppressErrors = suppress;
}

void Request::setDataSink(QIODevice *sink)
{
    d->sink = sink;
    d->hasSink = sink != nullptr;
}

QIODevice *Request::dataSink() const
{
    return d->sink;
}

void Request::setTransferTimeout(std::chrono::milliseconds timeout)
{
    d->silence.setInterval(timeout);
}

void Request::setMaximumBodySize(qint64 bytes)
{
    d->maximumSize = bytes;
}

bool Request::isOk(int code) const
{
    return d->settled && d->error == QNetworkReply::NoError && d->status == code;
}

int Request::responseCode() const
{
    return d->status;
}

int Request::error() const
{
    return d->error;
}

QString Request::errorString() const
{
    return d->errorString;
}

QByteArray Request::rawResponse() const
{
    return d->body;
}

QByteArray Request::hash() const
{
    return d->md5.result();
}

QNetworkReply *Request::reply() const
{
    return d->reply;
}

} // namespace ts
