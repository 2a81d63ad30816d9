#pragma once

#include "repository/packageaccessor.h"
#include "storage/ifileproxy.h"

#include <QByteArray>
#include <QPointer>
#include <QSharedPointer>
#include <QString>
#include <QUrl>

#include <atomic>

namespace ts::account {
class Service;
}

namespace ts::pm {

class FileProxyServer;
class FileStore;
class PackageLedger;

/**
 * Reads one ledger of a PackageServer, and serves files of its packages before they are installed.
 *
 * Stays with the ledger that was current when it was made. A file that the FileStore does not have gets a URL
 * at the FileProxyServer; what asks for that URL makes the file come from the server into the store.
 *
 * Ownership: as PackageAccessor; shares the ledger. The service is not owned and may go away at any time.
 * Threads: as PackageAccessor; made and destroyed on the main thread, which is that of the proxy server. The
 * first packageFileUrl() for a file that is not local asks the main thread: do not let that thread wait for
 * the caller of this one.
 * Errors: a manifest that is no JSON is logged in "tamsel.packageserver.ledger" and empty. A link with an end
 * outside the ledger has an empty end, a type that does not exist is Invalid: the index drops such records.
 * Requests for files are answered with 502 without a service, with 404 for what the ledger does not have,
 * with 500 for a file that the store refuses, and otherwise with the code of the server.
 */
class TAMSELPACKAGEMANAGER_EXPORT PackageServerAccessor : public PackageAccessor, public IFileProxy
{
public:
    PackageServerAccessor(ts::account::Service *service, const QSharedPointer<PackageLedger> &ledger);
    ~PackageServerAccessor() override;

    void initialize() override;
    int packageCount() const override;
    PackageInfo packageInfo(int index) const override;
    QJsonObject packageManifest(int index) const override;

    /** A local file, a URL at the loopback interface, or an empty URL if the package has no such file. */
    QUrl packageFileUrl(int index, const QString &name) const override;
    PackageInstaller *packageInstaller(int index, const InstallLocation &location) const override;
    int keywordCount() const override;
    KeywordInfo keywordInfo(int index) const override;
    QStringList keywordLanguages() const override;
    int linkCount() const override;
    LinkInfo linkInfo(int index) const override;

    /** For the proxy server, which knows this object from the first URL there that packageFileUrl() gives. */
    void requestFile(const QUrl &url) override;

private:
    QUrl openProxy() const;
    QByteArray requestedFileId(const QUrl &url) const;
    QByteArray fileId(const QByteArray &packageId, const QString &name) const;
    void loadFile(const QByteArray &id, const QUrl &url);

    const QSharedPointer<PackageLedger> ledger;
    const QPointer<ts::account::Service> service;
    const QSharedPointer<FileStore> store;
    mutable QString proxyKey;                             // main thread only, as is proxy
    mutable QSharedPointer<FileProxyServer> proxy;        // null until the first URL there is wanted
    mutable std::atomic<const QUrl *> proxyBase{nullptr}; // of all URLs there; set once, by the main thread
};

} // namespace ts::pm
