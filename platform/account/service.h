#pragma once

#include "resource.h"
#include "tamselaccount_export.h"

#include <QScopedPointer>
#include <QUrl>

class QNetworkRequest;

namespace ts {
class Request;
}

namespace ts::account {

class ServicePrivate;

/**
 * An account-bound connection to one HTTP server: where it is, and how to authenticate there.
 *
 * Ownership: the application's; it may go away before those that use it.
 * Threads: the thread it was made on; its requests live there too.
 * Signals: statusChanged() on every change of status().
 * Errors: a base URL that is no absolute HTTP or HTTPS URL makes enable() end in Failed. The service does not
 * probe the server: Ready means that requests may be sent.
 */
class TAMSELACCOUNT_EXPORT Service : public Resource
{
    Q_OBJECT
    Q_PROPERTY(QUrl baseUrl READ baseUrl CONSTANT)
    Q_PROPERTY(Status status READ status NOTIFY statusChanged)

public:
    enum Status {
        Disabled = 0,   ///< no requests are sent
        Connecting = 1, ///< enabled, not usable yet
        Ready = 2,      ///< requests may be sent
        Failed = 3,     ///< cannot be used as it is configured
    };
    Q_ENUM(Status)

    /**
     * A disabled service, without credentials unless \a baseUrl holds a user and a password; they are taken
     * out of it. Relative URLs resolve below the base URL, whether or not it ends in a slash. An empty \a
     * uuid is replaced by one derived from the base URL, so that it is the same in every run.
     */
    explicit Service(const QUrl &baseUrl, const QString &uuid = QString(), QObject *parent = nullptr);
    ~Service() override;

    QUrl baseUrl() const;
    Status status() const;

    /**
     * Credentials to send with each request to the origin of the base URL, and to no other. A token that is
     * no visible ASCII text is no credential.
     */
    void setBearerToken(const QString &token);
    void setUserAndPassword(const QString &user, const QString &password);
    void clearCredentials();

    /** Makes the service usable: Connecting, and from the event loop Ready or Failed. Does nothing when
     * enabled. */
    void enable();
    void disable();

    /**
     * A request for \a url, resolved below the base URL. The credentials go along to all of the origin, that
     * is to the same scheme, host and port, also above the base URL ("../y"), and nowhere else ("//other/").
     */
    QNetworkRequest createRequest(const QUrl &url) const;

    /**
     * Sends a GET. Never null; the request deletes itself once finished, and the caller may become its
     * parent. It fails, through its finished(), while the service is disabled or failed, and may fail when
     * the service goes away.
     */
    Request *getRequest(const QNetworkRequest &request) const;
    Request *getRequest(const QUrl &url) const;

Q_SIGNALS:
    void statusChanged();

private:
    QScopedPointer<ServicePrivate> d;
};

} // namespace ts::account
