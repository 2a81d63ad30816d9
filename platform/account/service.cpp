#include "service.h"

#include <Tamsel/GetRequest>
#include <TamselNetwork/NetworkAccessManager>

#include "origin_p.h"

#include <algorithm>

namespace ts::account {

using network::NetworkAccessManager;

class ServicePrivate
{
public:
    ServicePrivate(Service *q, const QUrl &url);

    void setStatus(Service::Status status);
    void connectToServer();

    Service *q;
    QUrl baseUrl;
    QByteArray authorization; // value of the header; empty without credentials
    Service::Status status = Service::Disabled;
    QSharedPointer<NetworkAccessManager> manager = NetworkAccessManager::sharedInstance();
};

namespace {

// Two ways of writing one URL, and two users of one server, have one id.
QString stableId(const QUrl &url, const QString &uuid)
{
    return uuid.isEmpty() ? url.toString(QUrl::RemoveUserInfo | QUrl::StripTrailingSlash | QUrl::RemoveQuery
                                         | QUrl::RemoveFragment | QUrl::FullyEncoded)
                          : uuid;
}

// A name that a relative URL resolves against ends in a slash.
QUrl withSlash(QUrl url)
{
    if (!url.path().endsWith(QLatin1Char('/')))
        url.setPath(url.path(QUrl::FullyEncoded) + QLatin1Char('/'), QUrl::TolerantMode);
    return url;
}

bool isVisible(QChar c)
{
    return c > QLatin1Char(' ') && c < QLatin1Char('\x7f');
}

} // namespace

ServicePrivate::ServicePrivate(Service *q, const QUrl &url)
    : q(q)
    , baseUrl(url)
{
    baseUrl.setUserInfo(QString());
}

void ServicePrivate::setStatus(Service::Status newStatus)
{
    if (status == newStatus)
        return;
    status = newStatus;
    Q_EMIT q->statusChanged();
}

void ServicePrivate::connectToServer()
{
    if (status == Service::Connecting) // else it has been disabled meanwhile
        setStatus(isHttp(baseUrl) ? Service::Ready : Service::Failed);
}

Service::Service(const QUrl &baseUrl, const QString &uuid, QObject *parent)
    : Resource(stableId(baseUrl, uuid), parent)
    , d(new ServicePrivate(this, baseUrl))
{
    if (!baseUrl.userName().isEmpty())
        setUserAndPassword(baseUrl.userName(QUrl::FullyDecoded), baseUrl.password(QUrl::FullyDecoded));
}

Service::~Service() = default;

QUrl Service::baseUrl() const
{
    return d->baseUrl;
}

Service::Status Service::status() const
{
    return d->status;
}

void Service::setBearerToken(const QString &token)
{
    // A line break in a token would begin another header.
    const bool usable = !token.isEmpty() && std::all_of(token.cbegin(), token.cend(), isVisible);
    d->authorization = usable ? "Bearer " + token.toLatin1() : QByteArray();
}

void Service::setUserAndPassword(const QString &user, const QString &password)
{
    d->authorization = "Basic " + (user + QLatin1Char(':') + password).toUtf8().toBase64();
}

void Service::clearCredentials()
{
    d->authorization.clear();
}

void Service::enable()
{
    if (d->status != Disabled)
        return;
    QMetaObject::invokeMethod(
        this, [this] { d->connectToServer(); }, Qt::QueuedConnection);
    d->setStatus(Connecting);
}

void Service::disable()
{
    d->setStatus(Disabled);
}

QNetworkRequest Service::createRequest(const QUrl &url) const
{
    const QUrl resolved = withSlash(d->baseUrl).resolved(url);
    QNetworkRequest request(resolved);
    if (!d->authorization.isEmpty() && isSameOrigin(d->baseUrl, resolved))
        request.setRawHeader("Authorization", d->authorization);
    return request;
}

Request *Service::getRequest(const QNetworkRequest &request) const
{
    const bool usable = d->status == Connecting || d->status == Ready;
    return new GetRequest(request, usable ? d->manager.data() : nullptr);
}

Request *Service::getRequest(const QUrl &url) const
{
    return getRequest(createRequest(url));
}

} // namespace ts::account
