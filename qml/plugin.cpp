#include "plugin.h"

#include "couchdbsource.h"
#include "documentsource.h"
#include "localsource.h"
#include "packageprovider.h"
#include "packageserversource.h"
#include "packagesourceelement.h"
#include "promptlayout.h"
#include "sequentialrequests.h"

#include <TamselDataCore/ReferenceType>
#include <TamselPackageManager/CategoryListModel>
#include <TamselPackageManager/HasKeyword>
#include <TamselPackageManager/HasManifestField>
#include <TamselPackageManager/Keyword>
#include <TamselPackageManager/KeywordSuggestionModel>
#include <TamselPackageManager/ManifestBooleanField>
#include <TamselPackageManager/ManifestField>
#include <TamselPackageManager/ManifestFileField>
#include <TamselPackageManager/ManifestSizeField>
#include <TamselPackageManager/ManifestStringField>
#include <TamselPackageManager/MatchesKeywordSearch>
#include <TamselPackageManager/PackageData>
#include <TamselPackageManager/PackageListModel>
#include <TamselPackageManager/PackageMatcher>
#include <TamselPackageManager/PackageMatcherGroup>
#include <TamselPackageManager/PackageReference>
#include <TamselPackageManager/PackageReferenceField>
#include <TamselPackageManager/PackageReferenceType>
#include <TamselPackageManager/PackageSorter>
#include <TamselPackageManager/SortByField>
#include <TamselPackageManager/SortByIntegerField>
#include <TamselPackageManager/SortByStringField>

#include <QQmlEngine>
#include <qqml.h>

namespace {

constexpr int majorVersion = 1;
constexpr int minorVersion = 0;

template<typename Type>
void registerType(const char *uri, const char *name)
{
    qmlRegisterType<Type>(uri, majorVersion, minorVersion, name);
}

template<typename Type>
void registerAbstract(const char *uri, const char *name, const QString &reason)
{
    qmlRegisterUncreatableType<Type>(uri, majorVersion, minorVersion, name, reason);
}

void registerManifestFields(const char *uri)
{
    registerType<ts::pm::ManifestField>(uri, "ManifestField");
    registerType<ts::pm::ManifestBooleanField>(uri, "ManifestBooleanField");
    registerType<ts::pm::ManifestFileField>(uri, "ManifestFileField");
    registerType<ts::pm::ManifestSizeField>(uri, "ManifestSizeField");
    registerType<ts::pm::ManifestStringField>(uri, "ManifestStringField");
}

void registerMatchers(const char *uri)
{
    registerAbstract<ts::pm::PackageMatcher>(uri, "PackageMatcher",
                                             QStringLiteral("PackageMatcher is the base of matchers"));
    registerType<ts::pm::HasKeyword>(uri, "HasKeyword");
    registerType<ts::pm::HasManifestField>(uri, "HasManifestField");
    registerType<ts::pm::MatchesKeywordSearch>(uri, "MatchesKeywordSearch");
    registerType<ts::pm::PackageMatcherGroup>(uri, "PackageMatcherGroup");
}

void registerSorters(const char *uri)
{
    registerAbstract<ts::pm::PackageSorter>(uri, "PackageSorter",
                                            QStringLiteral("PackageSorter is the base of sorters"));
    registerAbstract<ts::pm::SortByField>(uri, "SortByField",
                                          QStringLiteral("SortByField is the base of sorters by a field"));
    registerType<ts::pm::SortByIntegerField>(uri, "SortByIntegerField");
    registerType<ts::pm::SortByStringField>(uri, "SortByStringField");
}

void registerModels(const char *uri)
{
    registerType<ts::pm::CategoryListModel>(uri, "CategoryListModel");
    registerType<ts::pm::KeywordSuggestionModel>(uri, "KeywordSuggestionModel");
    registerType<ts::pm::PackageListModel>(uri, "PackageListModel");
    registerAbstract<ts::pm::PromptLayout>(uri, "PromptLayout",
                                           QStringLiteral("PromptLayout is attached to a view"));
}

void registerPackages(const char *uri)
{
    registerType<ts::pm::Keyword>(uri, "Keyword");
    registerType<ts::pm::PackageData>(uri, "PackageData");
    registerAbstract<ts::pm::PackageReference>(
        uri, "PackageReference", QStringLiteral("References come from PackageProvider.packageReference()"));
    registerType<ts::pm::PackageReferenceField>(uri, "PackageReferenceField");
    ts::data::registerReferenceType<ts::pm::PackageReferenceType>();
}

void registerSources(const char *uri)
{
    registerType<ts::pm::PackageProvider>(uri, "PackageProvider");
    registerAbstract<ts::pm::PackageSourceElement>(
        uri, "PackageSourceElement", QStringLiteral("PackageSourceElement is the base of source elements"));
    registerType<ts::pm::CouchDBSource>(uri, "CouchDBSource");
    registerType<ts::pm::DocumentSource>(uri, "DocumentSource");
    registerType<ts::pm::LocalSource>(uri, "LocalSource");
    registerType<ts::pm::PackageServerSource>(uri, "PackageServerSource");
}

} // namespace

void TamselPackageManagerPlugin::registerTypes(const char *uri)
{
    registerManifestFields(uri);
    registerMatchers(uri);
    registerSorters(uri);
    registerModels(uri);
    registerPackages(uri);
    registerSources(uri);
}

// Engines do not own their factories.
void TamselPackageManagerPlugin::initializeEngine(QQmlEngine *engine, const char *)
{
    static ts::pm::SequentialRequests factory;
    if (!engine->networkAccessManagerFactory())
        engine->setNetworkAccessManagerFactory(&factory);
}
