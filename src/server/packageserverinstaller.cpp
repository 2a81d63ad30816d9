#include "server/packageserverinstaller.h"

#include "server/ledgerfile_p.h"

#include <TamselAccount/Service>

namespace ts::pm {

namespace {

constexpr int serviceError = 1;
constexpr int downloadError = 2;

} // namespace

PackageServerInstaller::PackageServerInstaller(const QHash<QString, QByteArray> &files,
                                               ts::account::Service *service,
                                               const QSharedPointer<FileStore> &store,
                                               const InstallLocation &location)
    : DownloadInstaller(store, QCryptographicHash::Sha224, downloadError, location)
{
    if (!service) {
        addErrors({{serviceError, QStringLiteral("No service for package file download")}});
        finish();
        return;
    }
    int number = 0;
    for (auto file = files.begin(); file != files.end(); ++file) {
        const QString id = QString::fromLatin1(file.value().toHex());
        if (!addFile(file.key(), id))
            continue;
        const QUrl url = ledgerFileUrl(id);
        download(number++, url, id, service->getRequest(url));
    }
    start();
}

PackageServerInstaller::~PackageServerInstaller() = default;

} // namespace ts::pm
