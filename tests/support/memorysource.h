#pragma once

#include "manualinstaller.h"
#include "repository/packageaccessor.h"
#include "repository/packagesource.h"

#include <QHash>
#include <QVector>

#include <functional>

namespace ts::pm::test {

/** What a MemorySource offers: records that stand in memory, as a test writes them down. */
struct MemoryCatalogue
{
    using InstallerFactory = std::function<PackageInstaller *(const QString &id, const InstallLocation &)>;
    /** Is told of calls: "languages", "initialize", "links", "manifest", and "gone" in the end. */
    using Listener = std::function<void(const char *call)>;

    void addPackage(const QString &id, const QString &type = QString(), const QJsonObject &manifest = {})
    {
        packages.append({id, type, QString()});
        manifests.insert(id, manifest);
    }

    /** One string for each language: a name, category and so on; of a noun the singular. */
    void addKeyword(const QString &id, Keyword::Type type, const QString &german, const QString &english)
    {
        keywords.append(
            {id,
             type,
             {{QStringLiteral("de"), german, QString()}, {QStringLiteral("en"), english, QString()}}});
    }

    void addLink(const QString &from, LinkType type, const QString &to) { links.append({type, from, to}); }

    QVector<PackageInfo> packages;
    QVector<KeywordInfo> keywords;
    QVector<LinkInfo> links;
    QStringList languages{QStringLiteral("de"), QStringLiteral("en")};
    QHash<QString, QJsonObject> manifests; // by package id
};

class MemoryAccessor : public PackageAccessor
{
public:
    MemoryAccessor(const MemoryCatalogue &catalogue, const MemoryCatalogue::InstallerFactory &installers,
                   const MemoryCatalogue::Listener &listener)
        : catalogue(catalogue)
        , installers(installers)
        , listener(listener)
    {
    }
    ~MemoryAccessor() override { tell("gone"); }

    void initialize() override { tell("initialize"); }
    int packageCount() const override { return catalogue.packages.size(); }
    PackageInfo packageInfo(int index) const override { return catalogue.packages.at(index); }
    QJsonObject packageManifest(int index) const override
    {
        tell("manifest");
        return catalogue.manifests.value(catalogue.packages.at(index).id);
    }
    QUrl packageFileUrl(int index, const QString &name) const override
    {
        return QUrl(QStringLiteral("memory:/%1/%2").arg(catalogue.packages.at(index).id, name));
    }
    PackageInstaller *packageInstaller(int index, const InstallLocation &location) const override
    {
        return installers ? installers(catalogue.packages.at(index).id, location)
                          : new ManualInstaller(location);
    }
    int keywordCount() const override { return catalogue.keywords.size(); }
    KeywordInfo keywordInfo(int index) const override { return catalogue.keywords.at(index); }
    QStringList keywordLanguages() const override
    {
        tell("languages");
        return catalogue.languages;
    }
    int linkCount() const override
    {
        tell("links");
        return catalogue.links.size();
    }
    LinkInfo linkInfo(int index) const override { return catalogue.links.at(index); }

private:
    void tell(const char *call) const
    {
        if (listener)
            listener(call);
    }

    const MemoryCatalogue catalogue;
    const MemoryCatalogue::InstallerFactory installers;
    const MemoryCatalogue::Listener listener;
};

/** A source of records that stand in memory. Packages install by ManualInstaller unless a factory is set. */
class MemorySource : public PackageSource
{
    Q_OBJECT

public:
    explicit MemorySource(int priority = 1)
        : sourcePriority(priority)
    {
    }

    int priority() const override { return sourcePriority; }
    PackageAccessor *getAccessor() const override
    {
        ++accessors;
        return new MemoryAccessor(catalogue, installers, listener);
    }
    void persist() override
    {
        if (onPersist)
            onPersist();
    }
    void update() override { ++updateCalls; }

    MemoryCatalogue catalogue;
    MemoryCatalogue::InstallerFactory installers;
    MemoryCatalogue::Listener listener; // of accessors from now on
    mutable int accessors = 0;          // handed out
    int updateCalls = 0;
    std::function<void()> onPersist;

private:
    const int sourcePriority;
};

} // namespace ts::pm::test
