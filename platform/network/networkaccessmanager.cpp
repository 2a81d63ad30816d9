#include "networkaccessmanager.h"

#include <QNetworkCookie>
#include <QNetworkCookieJar>

namespace ts::network {

namespace {

// Several services share the manager, and none of them is to be recognised by what another one has set.
class NoCookies : public QNetworkCookieJar
{
public:
    using QNetworkCookieJar::QNetworkCookieJar;

    QList<QNetworkCookie> cookiesForUrl(const QUrl &url) const override
    {
        Q_UNUSED(url)
        return {};
    }

    bool setCookiesFromUrl(const QList<QNetworkCookie> &cookies, const QUrl &url) override
    {
        Q_UNUSED(cookies)
        Q_UNUSED(url)
        return false;
    }
};

} // namespace

NetworkAccessManager::NetworkAccessManager(QObject *parent)
    : QNetworkAccessManager(parent)
{
    setCookieJar(new NoCookies(this));
    setRedirectPolicy(QNetworkRequest::NoLessSafeRedirectPolicy);
}

NetworkAccessManager::~NetworkAccessManager() = default;

QSharedPointer<NetworkAccessManager> NetworkAccessManager::sharedInstance()
{
    static QWeakPointer<NetworkAccessManager> shared;
    QSharedPointer<NetworkAccessManager> manager = shared.toStrongRef();
    if (!manager) {
        manager = QSharedPointer<NetworkAccessManager>::create();
        shared = manager;
    }
    return manager;
}

} // namespace ts::network
