#include "couchdbsource.h"

#include "databaseurl.h"

#include <TamselPackageManager/CouchDBPackageSource>

namespace ts::pm {

CouchDBSource::CouchDBSource(QObject *parent)
    : PackageSourceElement(parent)
{
}

CouchDBSource::~CouchDBSource() = default;

void CouchDBSource::setUrl(const QUrl &url)
{
    if (databaseUrl == url)
        return;
    databaseUrl = url;
    replaceSource();
    Q_EMIT urlChanged();
}

std::unique_ptr<PackageSource> CouchDBSource::createSource()
{
    if (databaseUrl.isEmpty())
        return nullptr;
    manager = ts::network::NetworkAccessManager::sharedInstance();
    return std::make_unique<CouchDBPackageSource>(withoutTrailingSlash(databaseUrl), manager.data());
}

} // namespace ts::pm
