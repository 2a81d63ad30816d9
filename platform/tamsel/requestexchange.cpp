#include "origin_p.h"
#include "request_p.h"

#include <QLoggingCategory>
#if QT_CONFIG(ssl)
#include <QSslError>
#endif

#include <algorithm>
#include <limits>

namespace ts {

namespace {

Q_LOGGING_CATEGORY(lcRequest, "tamsel.request", QtInfoMsg)

constexpr std::chrono::milliseconds LongestSilence = std::chrono::seconds(30);
// QByteArray keeps a header and a NUL below 2 GiB, and a data sink may well be a QBuffer.
constexpr qint64 LargestBody = std::numeric_limits<int>::max() - 64;
constexpr qint64 LargestErrorBody = 1 << 20;
constexpr qint64 ReadAhead = 1 << 18; // bytes that Qt may hold for us
constexpr int StepSize = 64 * 1024;
constexpr int MostRedirects = 10;

void dropCredentials(QNetworkRequest *request)
{
    for (const char *name : {"Authorization", "Proxy-Authorization", "Cookie"})
        request->setRawHeader(name, QByteArray()); // a null value removes the header
}

// Qt's own text may tell the whole URL, and error texts go to logs.
QString errorTextOf(const QNetworkReply &reply)
{
    const QUrl url = reply.url();
    return reply.errorString().replace(url.toString(), url.toString(QUrl::RemoveUserInfo));
}

} // namespace

RequestPrivate::RequestPrivate(Request *q, const QNetworkRequest &request, QNetworkAccessManager *manager)
    : q(q)
    , request(request)
    , manager(manager)
    , maximumSize(LargestBody)
{
    silence.setInterval(LongestSilence);
    silence.setSingleShot(true);
    QObject::connect(&silence, &QTimer::timeout, q, [this] {
        settle(QNetworkReply::TimeoutError, QStringLiteral("No answer for %1 ms").arg(silence.interval()));
    });
    // Qt would send all headers along to wherever a redirect leads.
    this->request.setAttribute(QNetworkRequest::RedirectPolicyAttribute,
                               QNetworkRequest::ManualRedirectPolicy);
    // Qt does not decompress what it has not asked for itself: it would hold the whole result at once.
    if (!request.hasRawHeader("Accept-Encoding"))
        this->request.setRawHeader("Accept-Encoding", "gzip");
}

RequestPrivate::~RequestPrivate()
{
    dropReply();
}

void RequestPrivate::send()
{
    if (!manager)
        return settle(QNetworkReply::OperationCanceledError, QStringLiteral("No network access manager"));
    if (!isHttp(request.url()))
        return settle(QNetworkReply::ProtocolUnknownError, QStringLiteral("Not an HTTP URL"));
    queue = ExchangeQueue::of(manager);
    if (queue->enter(this, originOf(request.url())))
        return start();
    silence.stop(); // runs if this is a redirect
    waiting = QObject::connect(queue, &QObject::destroyed, q, [this] { loseManager(); });
}

void RequestPrivate::start()
{
    if (settled)
        return;
    QObject::disconnect(waiting); // from now on the reply tells
    reply = manager->get(request);
    reply->setReadBufferSize(ReadAhead);
    QObject::connect(reply, &QNetworkReply::metaDataChanged, q, [this] { readHead(); });
    QObject::connect(reply, &QNetworkReply::readyRead, q, [this] { readBody(); });
    QObject::connect(reply, &QNetworkReply::finished, q, [this] { endBody(); });
    QObject::connect(reply, &QObject::destroyed, q, [this] { loseManager(); });
    explainHandshake();
    silence.start();
}

// Qt's error says that the handshake has failed, and not which of its checks.
void RequestPrivate::explainHandshake()
{
#if QT_CONFIG(ssl)
    QObject::connect(reply, &QNetworkReply::sslErrors, q, [this](const QList<QSslError> &errors) {
        for (const QSslError &sslError : errors)
            handshakeFaults.append(sslError.errorString());
    });
#endif
}

void RequestPrivate::loseManager()
{
    settle(QNetworkReply::OperationCanceledError, QStringLiteral("The network access manager went away"));
}

// Comes once the headers are complete, before the body, and possibly again for a trailer.
void RequestPrivate::readHead()
{
    silence.start();
    if (status != 0)
        return;
    const QUrl target = redirectTarget();
    if (!target.isEmpty()) {
        reply->disconnect(q);
        QMetaObject::invokeMethod(
            q, [this, target] { follow(target); }, Qt::QueuedConnection);
        return;
    }
    status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    const QByteArray encoding = reply->rawHeader("Content-Encoding").trimmed().toLower();
    if (encoding == "gzip" || encoding == "x-gzip")
        inflater = std::make_shared<Inflater>();
    else if (!encoding.isEmpty() && encoding != "identity")
        settle(QNetworkReply::UnknownContentError, QStringLiteral("Unknown content encoding"));
    else if (declaredSize() > sizeLimit())
        settle(QNetworkReply::UnknownContentError, QStringLiteral("The body is too large"));
}

// Where the reply leads to; empty if it is an answer.
QUrl RequestPrivate::redirectTarget() const
{
    switch (reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt()) {
    case 301:
    case 302:
    case 303:
    case 307:
    case 308:
        break;
    default:
        return {};
    }
    const QUrl location = QUrl::fromEncoded(reply->rawHeader("Location").trimmed());
    if (location.isEmpty() || !location.isValid())
        return {};
    QUrl target = reply->url().resolved(location);
    target.setUserInfo(QString()); // servers do not choose our credentials
    return target;
}

void RequestPrivate::follow(const QUrl &target)
{
    if (settled)
        return;
    const QUrl source = request.url();
    const auto refuse = [this](QNetworkReply::NetworkError code, const QString &text) {
        status = reply ? reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt() : 0;
        settle(code, text);
    };
    if (++redirects > MostRedirects)
        return refuse(QNetworkReply::TooManyRedirectsError, QStringLiteral("Too many redirects"));
    if (!isHttp(target) || (isSecure(source) && !isSecure(target)))
        return refuse(QNetworkReply::InsecureRedirectError,
                      QStringLiteral("Redirected to a less safe place"));
    dropReply();
    request.setUrl(target);
    if (!isSameOrigin(source, target))
        dropCredentials(&request);
    send();
}

void RequestPrivate::readBody()
{
    silence.start();
    const QPointer<Request> alive = q; // a sink may well run other people's code
    char bytes[StepSize];
    while (alive && !settled && reply->bytesAvailable() > 0) {
        const auto count = int(reply->read(bytes, StepSize));
        if (count <= 0)
            return;
        received += count;
        decode(bytes, count);
    }
}

bool RequestPrivate::decode(const char *bytes, int count)
{
    if (!inflater)
        return consume(bytes, count);
    const QPointer<Request> alive = q;
    const auto consumer = [this](const char *piece, int length) { return consume(piece, length); };
    // Kept here in case that the consumer lets this object go.
    const std::shared_ptr<Inflater> decoder = inflater;
    const bool good = decoder->add(bytes, count, consumer);
    if (!good && alive)
        settle(QNetworkReply::UnknownContentError, QStringLiteral("The body is badly compressed"));
    return good;
}

// False if the exchange, or this object with it, has ended.
bool RequestPrivate::consume(const char *bytes, int count)
{
    if (count > sizeLimit() - size) {
        settle(QNetworkReply::UnknownContentError, QStringLiteral("The body is too large"));
        return false;
    }
    size += count;
    md5.addData(bytes, count);
    if (!hasSink || !isSuccess()) {
        body.append(bytes, count);
        return true;
    }
    const QPointer<Request> alive = q;
    const bool taken = sink && sink->write(bytes, count) == count;
    if (!alive || settled)
        return false;
    if (!taken)
        settle(QNetworkReply::OperationCanceledError, QStringLiteral("The body could not be stored"));
    return taken;
}

// The largest body after decompression. What merely explains a failure need not be long.
qint64 RequestPrivate::sizeLimit() const
{
    return std::min(maximumSize, isSuccess() ? LargestBody : LargestErrorBody);
}

// Bytes of the body as it is sent; -1 if the head does not say.
qint64 RequestPrivate::declaredSize() const
{
    const bool bodiless = status == 204 || status == 304;
    if (!reply || bodiless || reply->hasRawHeader("Transfer-Encoding"))
        return -1;
    bool valid = false;
    const qint64 bytes = reply->rawHeader("Content-Length").toLongLong(&valid);
    return valid ? bytes : -1;
}

void RequestPrivate::endBody()
{
    const QPointer<Request> alive = q;
    readBody();
    if (!alive || settled)
        return;
    if (reply->error() != QNetworkReply::NoError)
        return settle(reply->error(),
                      (QStringList(errorTextOf(*reply)) + handshakeFaults).join(QLatin1String("; ")));
    if (status == 0)
        return settle(QNetworkReply::ProtocolFailure, QStringLiteral("Not an HTTP answer"));
    if (declaredSize() > received || (inflater && received > 0 && !inflater->isComplete()))
        return settle(QNetworkReply::RemoteHostClosedError, QStringLiteral("The body ended too early"));
    if (hasSink && !sink && isSuccess())
        return settle(QNetworkReply::OperationCanceledError, QStringLiteral("The data sink went away"));
    settle(QNetworkReply::NoError, QString());
}

void RequestPrivate::settle(QNetworkReply::NetworkError code, const QString &text)
{
    if (settled)
        return;
    settled = true;
    error = code;
    errorString = text;
    silence.stop();
    if (reply) {
        reply->disconnect(q);
        reply->abort();
    }
    leaveQueue();
    QMetaObject::invokeMethod(
        q, [this] { deliver(); }, Qt::QueuedConnection);
}

void RequestPrivate::deliver()
{
    if (error != QNetworkReply::NoError)
        logFailure();
    const QPointer<Request> alive = q;
    Q_EMIT q->finished();
    if (alive)
        q->deleteLater();
}

// Who reports failures itself often knows the status alone, which does not tell a bad certificate from a
// server that is away.
void RequestPrivate::logFailure() const
{
    const auto text =
        QStringLiteral("Request failed: %1 %2 %3")
            .arg(request.url().toDisplayString(QUrl::RemoveUserInfo), QString::number(status), errorString);
    if (suppressErrors)
        qCDebug(lcRequest).noquote() << text;
    else
        qCWarning(lcRequest).noquote() << text;
}

// Not deleted at once: this may be running below one of its signals.
void RequestPrivate::dropReply()
{
    leaveQueue();
    if (!reply)
        return;
    reply->disconnect(q);
    reply->abort();
    reply->deleteLater();
    reply.clear();
}

void RequestPrivate::leaveQueue()
{
    if (!queue)
        return;
    queue->leave(this, originOf(request.url()));
    queue.clear();
}

} // namespace ts
