#pragma once

#include "repository/packagesource.h"

class QNetworkAccessManager;
class QUrl;

namespace ts::pm {

class CouchDBPackageSourcePrivate;

/**
 * Packages, keywords and links from one CouchDB database, by its view "packages" of the design document
 * "tamsel". docs/couchdb.md describes what the view has to give.
 *
 * Polls: 2 seconds after it is made, and then every 122 seconds. One that is overtaken by the next goes on
 * unheard, or never begins. An answer that differs from the one before gives an updateRequired(). The last
 * answer that was persisted is there again at the next start, before any poll.
 *
 * Ownership: the access manager is not owned, and may go before the source does; then polls and installs
 * fail.
 * Threads: repository thread only, which has to be that of the access manager. persist() waits for as long as
 * another process is persisting the same database.
 * Errors: a poll that fails leaves everything as it is, with a critical message in "tamsel.package.couchdb"
 * for any answer but a 404: a database without the view is not unusual. Persisted data that do not match
 * their hash are removed, with a message. An answer of more than 4 MiB cannot be read, and gives no packages.
 */
class TAMSELPACKAGEMANAGER_EXPORT CouchDBPackageSource : public PackageSource
{
    Q_OBJECT

public:
    /** \a url is that of the database, without a "/" at its end. */
    CouchDBPackageSource(const QUrl &url, QNetworkAccessManager *manager, QObject *parent = nullptr);
    ~CouchDBPackageSource() override;

    /** 2, below the local source and above all others. */
    int priority() const override;
    PackageAccessor *getAccessor() const override;
    void persist() override;
    void update() override;

protected:
    void timerEvent(QTimerEvent *event) override;

private Q_SLOTS:
    void finishUpdate();

private:
    QScopedPointer<CouchDBPackageSourcePrivate> d;
};

} // namespace ts::pm
