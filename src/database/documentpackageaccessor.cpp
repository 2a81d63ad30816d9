#include "database/documentpackageaccessor.h"

#include "database/documentpackageinstaller.h"
#include "database/rowdata_p.h"

#include <QJsonArray>

namespace ts::pm {

DocumentPackageAccessor::DocumentPackageAccessor(const QString &type, const ListingFile &dataFile)
    : type(type)
    , dataFile(dataFile)
{
}

DocumentPackageAccessor::~DocumentPackageAccessor() = default;

void DocumentPackageAccessor::initialize()
{
    const QJsonArray rows = readRowData(dataFile.path);
    documents.reserve(rows.size());
    for (const QJsonValue &row : rows)
        documents.append(row.toObject().value(QLatin1String("doc")).toObject());
}

int DocumentPackageAccessor::packageCount() const
{
    return documents.size();
}

PackageInfo DocumentPackageAccessor::packageInfo(int index) const
{
    if (index < 0 || index >= documents.size())
        return {};
    const QJsonObject &document = documents.at(index);
    return {document.value(QLatin1String("_id")).toString(), QLatin1String("compat:") + type,
            document.value(QLatin1String("_rev")).toString()};
}

QJsonObject DocumentPackageAccessor::packageManifest(int index) const
{
    return documents.value(index);
}

QUrl DocumentPackageAccessor::packageFileUrl(int index, const QString &name) const
{
    Q_UNUSED(index)
    Q_UNUSED(name)
    return QUrl();
}

PackageInstaller *DocumentPackageAccessor::packageInstaller(int index, const InstallLocation &location) const
{
    if (index < 0 || index >= documents.size())
        return nullptr;
    return new DocumentPackageInstaller(location);
}

int DocumentPackageAccessor::keywordCount() const
{
    return 0;
}

KeywordInfo DocumentPackageAccessor::keywordInfo(int index) const
{
    Q_UNUSED(index)
    return {};
}

QStringList DocumentPackageAccessor::keywordLanguages() const
{
    return {};
}

int DocumentPackageAccessor::linkCount() const
{
    return 0;
}

LinkInfo DocumentPackageAccessor::linkInfo(int index) const
{
    Q_UNUSED(index)
    return {};
}

} // namespace ts::pm
