#include "documentsource.h"

#include "databaseurl.h"

#include <TamselDataCore/Context>
#include <TamselPackageManager/DocumentPackageSource>

namespace ts::pm {

DocumentSource::DocumentSource(QObject *parent)
    : PackageSourceElement(parent)
{
}

DocumentSource::~DocumentSource() = default;

void DocumentSource::setServiceUrl(const QUrl &url)
{
    if (service == url)
        return;
    service = url;
    replaceSource();
    Q_EMIT serviceUrlChanged();
}

void DocumentSource::setDatabase(const QString &database)
{
    if (databaseName == database)
        return;
    databaseName = database;
    replaceSource();
    Q_EMIT databaseChanged();
}

void DocumentSource::setDocumentType(const QString &documentType)
{
    if (type == documentType)
        return;
    type = documentType;
    replaceSource();
    Q_EMIT documentTypeChanged();
}

// The source before has been destroyed by now, so its context can go.
std::unique_ptr<PackageSource> DocumentSource::createSource()
{
    delete context;
    context = nullptr;
    if (service.isEmpty() || databaseName.isEmpty() || type.isEmpty())
        return nullptr;
    context = new ts::data::Context(withoutTrailingSlash(service), databaseName, this);
    return std::make_unique<DocumentPackageSource>(type, context);
}

} // namespace ts::pm
