#pragma once

#include "index/packageindexnode.h"
#include "storage/installlocation.h"

#include <QJsonObject>
#include <QSet>
#include <QString>
#include <QUrl>

#include <atomic>

namespace ts::pm {

class PackageInstaller;
struct PackageInfo;
struct TranslatedManifest;

/**
 * A package in an index: its place in the graph, its manifest, its files and its installer.
 *
 * Ownership: belongs to its index.
 * Threads: immutable, any thread, apart from the cached manifest, which is published atomically and kept
 * until the index goes, so that readers need no lock. install() makes objects of the calling thread.
 */
class TAMSELPACKAGEMANAGER_EXPORT PackageNode : public PackageIndexNode
{
public:
    /** Made by the build, from record number \a packageIndexInSource of accessor number \a sourceIndex. */
    PackageNode(const PackageInfo &info, PackageIndex *index, int sourceIndex, int packageIndexInSource);
    ~PackageNode() override;

    /** Hierarchical type, segments joined with ":". */
    const QStringRef &type() const { return packageType; }

    /** Revision as the source gave it; null where it has none. */
    const QStringRef &revision() const { return packageRevision; }

    /**
     * Whether \a query is the type of this package or one of the types above it: a:b has the types a and a:b.
     * Segments are compared whole and with case. An empty query is met only by a type whose first segment
     * is empty.
     */
    bool hasType(const QStringRef &query) const;

    /**
     * The keywords that the package carries, directly or through keywords that lead on: after an "is a" link
     * any link may follow, after "contains" only "contains" and "relates to", after "relates to" and "is"
     * only "relates to". Keywords at the end of the package's own "is not a" links are taken out.
     */
    QSet<KeywordNode *> keywords() const;

    /**
     * The text that places the package among those of its type: category chain, ":", attributes, "#", id,
     * built on German strings whatever the active language.
     */
    QString sortString() const;

    /** The manifest with its translatable strings in the application's language. */
    QJsonObject manifest() const;

    /** One field of manifest(); undefined if there is none of that name. */
    QJsonValue readManifest(const QString &field) const;

    /** Where the file \a name is: in the install location if it is there, otherwise at the source. */
    QUrl getFileUrl(const QString &name) const;

    /** The place of this package below the install root of its index. */
    InstallLocation installLocation() const;

    /**
     * Starts to install this package, and all that it requires, below \a location, or below the index's own
     * root if \a location is null.
     *
     * Each "requires" link of the closure makes one child job. A package that is reached more than once, by
     * several paths or a cycle, is walked into from its first job only.
     * Returns the root of the tree of jobs, owned by the caller; never null.
     */
    [[nodiscard]] PackageInstaller *install(const InstallLocation &location) const;

private:
    friend class PackageIndexBuilder;

    const TranslatedManifest *translatedManifest() const;
    PackageInstaller *startInstaller(const InstallLocation &location) const;
    QString pathInLocation() const;

    const QStringRef packageType;
    const QStringRef packageRevision;
    mutable std::atomic<TranslatedManifest *> manifestCache{nullptr};
    const int sourceIndex;
    const int packageIndexInSource;
    mutable QString sortCache; // complete before the index is published
};

} // namespace ts::pm
