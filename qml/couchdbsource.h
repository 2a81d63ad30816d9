#pragma once

#include "packagesourceelement.h"

#include <TamselNetwork/NetworkAccessManager>

#include <QSharedPointer>
#include <QUrl>

namespace ts::pm {

/**
 * A CouchDB database as a source: declares a CouchDBPackageSource, on the access manager that the process
 * shares.
 *
 * Ownership: as PackageSourceElement.
 * Threads: repository thread only.
 * Errors: a database that is away contributes the packages that were there when it was last saved.
 */
class CouchDBSource : public PackageSourceElement
{
    Q_OBJECT
    /**
     * The database, as in "https://example.org:6984/catalogue". Empty at first, which makes no source.
     * Another URL replaces the source.
     */
    Q_PROPERTY(QUrl url READ url WRITE setUrl NOTIFY urlChanged)

public:
    explicit CouchDBSource(QObject *parent = nullptr);
    ~CouchDBSource() override;

    QUrl url() const { return databaseUrl; }
    void setUrl(const QUrl &url);

Q_SIGNALS:
    void urlChanged();

protected:
    std::unique_ptr<PackageSource> createSource() override;

private:
    QUrl databaseUrl;
    QSharedPointer<ts::network::NetworkAccessManager> manager; // of the present source; null before the first
};

} // namespace ts::pm
