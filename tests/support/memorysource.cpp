#include "memorysource.h"

#include "manualinstaller.h"

namespace ts::pm::test {

void MemoryCatalogue::addPackage(const QString &id, const QString &type, const QJsonObject &manifest)
{
    packages.append({id, type, QString()});
    manifests.insert(id, manifest);
}

void MemoryCatalogue::addKeyword(const QString &id, Keyword::Type type, const QString &german,
                                 const QString &english)
{
    const QVector<LangString> strings{{QStringLiteral("de"), german, QString()},
                                      {QStringLiteral("en"), english, QString()}};
    keywords.append({id, type, strings});
}

void MemoryCatalogue::addLink(const QString &from, LinkType type, const QString &to)
{
    links.append({type, from, to});
}

MemoryAccessor::MemoryAccessor(const MemoryCatalogue &catalogue, const InstallerFactory &installers,
                               const Listener &listener)
    : catalogue(catalogue)
    , installers(installers)
    , listener(listener)
{
}

MemoryAccessor::~MemoryAccessor()
{
    tell("gone");
}

void MemoryAccessor::tell(const char *call) const
{
    if (listener)
        listener(call);
}

void MemoryAccessor::initialize()
{
    tell("initialize");
}

int MemoryAccessor::packageCount() const
{
    return catalogue.packages.size();
}

PackageInfo MemoryAccessor::packageInfo(int index) const
{
    return catalogue.packages.at(index);
}

QJsonObject MemoryAccessor::packageManifest(int index) const
{
    tell("manifest");
    return catalogue.manifests.value(catalogue.packages.at(index).id);
}

QUrl MemoryAccessor::packageFileUrl(int index, const QString &name) const
{
    return QUrl(QStringLiteral("memory:/%1/%2").arg(catalogue.packages.at(index).id, name));
}

PackageInstaller *MemoryAccessor::packageInstaller(int index, const InstallLocation &location) const
{
    return installers ? installers(catalogue.packages.at(index).id, location) : new ManualInstaller(location);
}

int MemoryAccessor::keywordCount() const
{
    return catalogue.keywords.size();
}

KeywordInfo MemoryAccessor::keywordInfo(int index) const
{
    return catalogue.keywords.at(index);
}

QStringList MemoryAccessor::keywordLanguages() const
{
    tell("languages");
    return catalogue.languages;
}

int MemoryAccessor::linkCount() const
{
    tell("links");
    return catalogue.links.size();
}

LinkInfo MemoryAccessor::linkInfo(int index) const
{
    return catalogue.links.at(index);
}

MemorySource::MemorySource(int priority, QObject *parent)
    : PackageSource(parent)
    , sourcePriority(priority)
{
}

int MemorySource::priority() const
{
    return sourcePriority;
}

PackageAccessor *MemorySource::getAccessor() const
{
    ++accessors;
    return new MemoryAccessor(catalogue, installers, listener);
}

void MemorySource::persist()
{
    ++persistCalls;
    if (onPersist)
        onPersist();
}

void MemorySource::update()
{
    ++updateCalls;
}

} // namespace ts::pm::test
