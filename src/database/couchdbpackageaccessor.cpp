#include "database/couchdbpackageaccessor.h"

#include "database/couchdbpackageinstaller.h"
#include "database/couchdburl_p.h"
#include "database/rowdata_p.h"
#include "logging_p.h"
#include "repository/keywordstrings_p.h"
#include "storage/filestore.h"

#include <QJsonArray>

namespace ts::pm {

namespace {

constexpr int prefixLength = 8; // of document ids, as in "package-" and "keyword-"; dropped, not compared

QString textOf(const QJsonObject &document, const char *key)
{
    return document.value(QLatin1String(key)).toString();
}

} // namespace

CouchDBPackageAccessor::CouchDBPackageAccessor(const QUrl &database, const ListingFile &dataFile,
                                               QNetworkAccessManager *manager)
    : database(database)
    , dataFile(dataFile)
    , manager(manager)
    , store(FileStore::defaultStore())
{
}

CouchDBPackageAccessor::~CouchDBPackageAccessor() = default;

void CouchDBPackageAccessor::initialize()
{
    const QJsonObject response = readDataFile(lcCouchDBPackageSource, dataFile.path).object();
    const QJsonArray rows = response.value(QLatin1String("rows")).toArray();
    documents.reserve(rows.size());
    for (const QJsonValue &value : rows) {
        const QJsonObject row = value.toObject();
        const QString kind = row.value(QLatin1String("key")).toArray().at(0).toString();
        rowsOfKind(kind).append(documents.size());
        documents.append(row.value(QLatin1String("value")).toObject());
    }
}

QVector<int> &CouchDBPackageAccessor::rowsOfKind(const QString &kind)
{
    if (kind == QLatin1String("package"))
        return packages;
    return kind == QLatin1String("keyword") ? keywords : links;
}

int CouchDBPackageAccessor::packageCount() const
{
    return packages.size();
}

PackageInfo CouchDBPackageAccessor::packageInfo(int index) const
{
    const QJsonObject &document = package(index);
    return {textOf(document, "_id").mid(prefixLength), textOf(document, "packageType"),
            textOf(document, "_rev")};
}

QJsonObject CouchDBPackageAccessor::packageManifest(int index) const
{
    return package(index).value(QLatin1String("manifest")).toObject();
}

QUrl CouchDBPackageAccessor::packageFileUrl(int index, const QString &name) const
{
    return attachmentUrl(documentUrl(database, textOf(package(index), "_id")), name);
}

PackageInstaller *CouchDBPackageAccessor::packageInstaller(int index, const InstallLocation &location) const
{
    const QJsonObject &document = package(index);
    return new CouchDBPackageInstaller(documentUrl(database, textOf(document, "_id")), manager, document,
                                       store, location);
}

int CouchDBPackageAccessor::keywordCount() const
{
    return keywords.size();
}

KeywordInfo CouchDBPackageAccessor::keywordInfo(int index) const
{
    const QJsonObject &document = documents.at(keywords.at(index));
    const Keyword::Type type = Keyword::typeFromString(textOf(document, "keywordType"));
    return {textOf(document, "_id").mid(prefixLength), type, keywordStrings(document, type)};
}

QStringList CouchDBPackageAccessor::keywordLanguages() const
{
    return {QStringLiteral("de"), QStringLiteral("en")};
}

int CouchDBPackageAccessor::linkCount() const
{
    return links.size();
}

LinkInfo CouchDBPackageAccessor::linkInfo(int index) const
{
    const QJsonObject &document = documents.at(links.at(index));
    return {Link::typeFromString(textOf(document, "linkType")), textOf(document, "from"),
            textOf(document, "to")};
}

} // namespace ts::pm
