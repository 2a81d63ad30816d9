#pragma once

#include "packagesourceelement.h"

#include <TamselAccount/Service>
#include <TamselPackageManager/PackageServer>

#include <QQmlParserStatus>
#include <QString>
#include <QUrl>

namespace ts::pm {

/**
 * A package server as a source: declares a PackageServer, with a service of its own.
 *
 * Ownership: as PackageSourceElement. Owns the service.
 * Threads: repository thread only.
 * Signals: statusChanged() on every change of status, after the signal of the property that caused it.
 * Errors: told by status. Whatever it is, the packages of the last ledger that was saved are there.
 */
class PackageServerSource : public PackageSourceElement, public QQmlParserStatus
{
    Q_OBJECT
    Q_INTERFACES(QQmlParserStatus)
    /** Where the server is, an absolute HTTP or HTTPS URL. Empty at first. A change replaces the source. */
    Q_PROPERTY(QUrl url READ url WRITE setUrl NOTIFY urlChanged)
    /**
     * Names the directory that the ledger is saved in. Empty at first: then it follows from the URL. A fixed
     * one keeps what was saved when the URL changes.
     */
    Q_PROPERTY(QString uuid READ uuid WRITE setUuid NOTIFY uuidChanged)
    /** Goes to the server as bearer token, and before user and password. Empty at first. */
    Q_PROPERTY(QString token READ token WRITE setToken NOTIFY credentialsChanged)
    /** Goes to the server with the password, unless it is empty, as it is at first. */
    Q_PROPERTY(QString user READ user WRITE setUser NOTIFY credentialsChanged)
    /** Goes with the user only. Empty at first. */
    Q_PROPERTY(QString password READ password WRITE setPassword NOTIFY credentialsChanged)
    /** What has come of the last question to the server. NoServer at first. */
    Q_PROPERTY(Status status READ status NOTIFY statusChanged)

public:
    enum Status {
        NoServer = 0,    ///< there is no URL, or the element has not been in use with it yet
        Connecting = 1,  ///< the server has not answered yet
        Ready = 2,       ///< the packages are those that the server has
        Invalid = 3,     ///< the URL is none of a server
        Unreachable = 4, ///< the server was away or refused to answer; it is asked again
        Untrusted = 5,   ///< the server gave a ledger that is damaged or not signed; it is asked again
    };
    Q_ENUM(Status)

    explicit PackageServerSource(QObject *parent = nullptr);
    ~PackageServerSource() override;

    QUrl url() const { return serverUrl; }
    void setUrl(const QUrl &url);

    QString uuid() const { return serverUuid; }
    void setUuid(const QString &uuid);

    QString token() const { return bearerToken; }
    void setToken(const QString &token);

    QString user() const { return userName; }
    void setUser(const QString &user);

    QString password() const { return userPassword; }
    void setPassword(const QString &password);

    Status status() const { return currentStatus; }

    /** The source is made when all properties that QML gives have been set. */
    void classBegin() override;
    void componentComplete() override;

Q_SIGNALS:
    void urlChanged();
    void uuidChanged();
    void credentialsChanged();
    void statusChanged();

protected:
    std::unique_ptr<PackageSource> createSource() override;
    void sourceReplaced() override;

private:
    void replaceServer(void (PackageServerSource::*changed)());
    void forgetServer();
    void setCredential(QString &credential, const QString &text);
    void applyCredentials();
    void setStatus(Status status);
    void handleServiceStatus();
    void handlePoll(PackageServer::PollResult result);

    QUrl serverUrl;
    QString serverUuid;
    QString bearerToken;
    QString userName;
    QString userPassword;
    Status currentStatus = NoServer;
    bool complete = true;
    std::unique_ptr<account::Service> service; // of the present source; null without one
};

} // namespace ts::pm
