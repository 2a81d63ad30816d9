#pragma once

#include "repository/packageaccessor.h"
#include "repository/packagesource.h"

#include <QHash>
#include <QVector>

#include <functional>

namespace ts::pm::test {

/** What a MemorySource offers: records that stand in memory, as a test writes them down. */
struct MemoryCatalogue
{
    QVector<PackageInfo> packages;
    QVector<KeywordInfo> keywords;
    QVector<LinkInfo> links;
    QStringList languages{QStringLiteral("de"), QStringLiteral("en")};
    QHash<QString, QJsonObject> manifests; // by package id

    void addPackage(const QString &id, const QString &type = QString(), const QJsonObject &manifest = {});
    /** One string for each language: a name, category and so on; of a noun the singular. */
    void addKeyword(const QString &id, Keyword::Type type, const QString &german, const QString &english);
    void addLink(const QString &from, LinkType type, const QString &to);
};

class MemoryAccessor : public PackageAccessor
{
public:
    using InstallerFactory = std::function<PackageInstaller *(const QString &id, const InstallLocation &)>;
    /** Is told of calls: "languages", "initialize", "links", "manifest", and "gone" in the end. */
    using Listener = std::function<void(const char *call)>;

    MemoryAccessor(const MemoryCatalogue &catalogue, const InstallerFactory &installers,
                   const Listener &listener = {});
    ~MemoryAccessor() override;

    void initialize() override;
    int packageCount() const override;
    PackageInfo packageInfo(int index) const override;
    QJsonObject packageManifest(int index) const override;
    QUrl packageFileUrl(int index, const QString &name) const override;
    PackageInstaller *packageInstaller(int index, const InstallLocation &location) const override;
    int keywordCount() const override;
    KeywordInfo keywordInfo(int index) const override;
    QStringList keywordLanguages() const override;
    int linkCount() const override;
    LinkInfo linkInfo(int index) const override;

private:
    void tell(const char *call) const;

    const MemoryCatalogue catalogue;
    const InstallerFactory installers;
    const Listener listener;
};

/** A source of records that stand in memory. Packages install by ManualInstaller unless a factory is set. */
class MemorySource : public PackageSource
{
    Q_OBJECT

public:
    explicit MemorySource(int priority = 1, QObject *parent = nullptr);

    int priority() const override;
    PackageAccessor *getAccessor() const override;
    void persist() override;
    void update() override;

    MemoryCatalogue catalogue;
    MemoryAccessor::InstallerFactory installers;
    MemoryAccessor::Listener listener; // of accessors from now on
    mutable int accessors = 0;         // handed out
    int persistCalls = 0;
    int updateCalls = 0;
    std::function<void()> onPersist;

private:
    const int sourcePriority;
};

} // namespace ts::pm::test
