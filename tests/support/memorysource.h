#pragma once

#include "literals.h"
#include "manualinstaller.h"
#include "repository/packageaccessor.h"
#include "repository/packagesource.h"

#include <QHash>
#include <QJsonDocument>
#include <QVector>

#include <functional>

namespace ts::pm::test {

inline QJsonObject json(const QString &text)
{
    return QJsonDocument::fromJson(text.toUtf8()).object();
}

/** Records that stand in memory, as a test writes them down. */
struct MemoryCatalogue
{
    void addPackage(const QString &id, const QString &type = QString(), const QJsonObject &manifest = {})
    {
        packages.append({id, type, QString()});
        manifests.insert(id, manifest);
    }

    /** One string for each language: a name, category and so on; of a noun the singular. */
    void addKeyword(const QString &id, Keyword::Type type, const QString &german, const QString &english)
    {
        keywords.append({id, type, {{"de"_s, german, QString()}, {"en"_s, english, QString()}}});
    }

    void addLink(const QString &from, LinkType type, const QString &to) { links.append({type, from, to}); }

    QVector<PackageInfo> packages;
    QVector<KeywordInfo> keywords;
    QVector<LinkInfo> links;
    QStringList languages{"de"_s, "en"_s};
    QHash<QString, QJsonObject> manifests; // by package id
};

/** What a MemorySource hands out, as it stands when an accessor is made. */
struct MemoryOffer
{
    using Installers = std::function<PackageInstaller *(const QString &id, const InstallLocation &)>;

    MemoryCatalogue catalogue;
    Installers installers; // ManualInstaller if there are none
    /** Is told of calls: "languages", "initialize", "links", "manifest", and "gone" in the end. */
    std::function<void(const char *call)> listener = [](const char *) {};
};

class MemoryAccessor : public PackageAccessor
{
public:
    explicit MemoryAccessor(const MemoryOffer &offer)
        : offer(offer)
    {
    }
    ~MemoryAccessor() override { offer.listener("gone"); }

    void initialize() override { offer.listener("initialize"); }
    int packageCount() const override { return catalogue.packages.size(); }
    PackageInfo packageInfo(int index) const override { return catalogue.packages.at(index); }
    QJsonObject packageManifest(int index) const override
    {
        offer.listener("manifest");
        return catalogue.manifests.value(catalogue.packages.at(index).id);
    }
    QUrl packageFileUrl(int index, const QString &name) const override
    {
        return QUrl("memory:/%1/%2"_s.arg(catalogue.packages.at(index).id, name));
    }
    PackageInstaller *packageInstaller(int index, const InstallLocation &location) const override
    {
        return offer.installers ? offer.installers(catalogue.packages.at(index).id, location)
                                : new ManualInstaller(location);
    }
    int keywordCount() const override { return catalogue.keywords.size(); }
    KeywordInfo keywordInfo(int index) const override { return catalogue.keywords.at(index); }
    QStringList keywordLanguages() const override
    {
        offer.listener("languages");
        return catalogue.languages;
    }
    int linkCount() const override
    {
        offer.listener("links");
        return catalogue.links.size();
    }
    LinkInfo linkInfo(int index) const override { return catalogue.links.at(index); }

private:
    const MemoryOffer offer;
    const MemoryCatalogue &catalogue = offer.catalogue;
};

/** A source of records that stand in memory. */
class MemorySource : public PackageSource, public MemoryOffer
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
        return new MemoryAccessor(*this);
    }
    void persist() override { onPersist(); }
    void update() override { ++updateCalls, onUpdate(); }

    mutable int accessors = 0; // handed out
    int updateCalls = 0;
    std::function<void()> onPersist = [] {};
    std::function<void()> onUpdate = [] {};

private:
    const int sourcePriority;
};

} // namespace ts::pm::test
