#pragma once

#include "index/packagelist.h"
#include "storage/installlocation.h"
#include "tamselpackagemanager_export.h"

#include <QScopedPointer>
#include <QSharedPointer>
#include <QStringRef>

#include <functional>

namespace ts::pm {

class KeywordNode;
class PackageAccessor;
class PackageIndexPrivate;
class PackageNode;
class PackageSource;

/**
 * An immutable snapshot of everything that all sources offered at one moment: packages and keywords, merged
 * into one graph of typed links.
 *
 * Of several records with one id the last one wins: that of the source with the highest priority and, within
 * one source, a keyword over a package. Links are made after that, so that they attach to the winner.
 *
 * Ownership: shared through QSharedPointer; owns its nodes and accessors. Results of queries hold a share.
 * Threads: immutable, any thread, once it is built; the hand-over of the finished index is what publishes it.
 * Before that, addSource() is repository thread only, and build() worker job only.
 * Errors: none. Records that cannot be used are left out; "tamsel.package.index" tells at debug level.
 */
class TAMSELPACKAGEMANAGER_EXPORT PackageIndex
{
public:
    /** Says which packages, or keywords, to take. An empty function takes all. */
    using PackageFilter = std::function<bool(PackageNode *)>;
    using KeywordFilter = std::function<bool(KeywordNode *)>;
    /** A strict less-than. An empty function keeps the order of the index. */
    using PackageOrder = std::function<bool(const PackageNode *, const PackageNode *)>;

    PackageIndex();
    ~PackageIndex();

    /**
     * Takes an accessor from \a source. To be called in ascending priority, before build(). Null, and a
     * source that gives no accessor, adds nothing.
     */
    void addSource(PackageSource *source);

    /** Reads all accessors and builds the graph. To be called once. */
    void build();

    /** Enters a string in the buffer of the index. Returns a null reference once the build is over. */
    QStringRef addString(const QString &string);

    /** Code of the language that keyword strings are in. */
    QStringRef activeLanguage() const;

    /** The accessor at \a position, in the order in which addSource() took them. No bounds check. */
    PackageAccessor *accessor(int position) const;

    /** Number of packages, of all types. */
    int packageCount() const;

    /** The keyword \a id; null if there is none, or if the id belongs to a package. */
    KeywordNode *getKeyword(const QStringRef &id) const;

    /** The package \a id; null if there is none, or if the id belongs to a keyword. */
    PackageNode *getPackage(const QStringRef &id) const;

    /**
     * The keywords of \a index that \a filter takes, ordered by display string without regard to case. An
     * empty list without an index. The filter runs on the calling thread.
     */
    static KeywordList selectKeywords(QSharedPointer<PackageIndex> index, const KeywordFilter &filter);

    /**
     * The packages of \a index from the first to the last of \a type and the types below it that \a filter
     * takes, in the order of the index (type, then sort string) or, with \a less, sorted stably by it.
     *
     * An empty \a type takes all packages, one that no package has takes none. The range is taken whole:
     * a type whose name sorts between a type and its sub-types, as a-b does between a and a:b, lies within.
     * Of the types above one that is nested deeper than 256 levels only the uppermost 256 are known.
     * Filter and order run on the calling thread.
     */
    static PackageList selectPackages(QSharedPointer<PackageIndex> index, const QString &type,
                                      const PackageFilter &filter, const PackageOrder &less);

    /** The install root of this index. Null before build(). */
    InstallLocation installLocation() const;

    /** Makes every manifest be read and translated anew on its next use. Repository thread only. */
    void invalidateManifests();

private:
    friend class KeywordNode;
    friend class KeywordReach;
    friend class PackageNode;
    Q_DISABLE_COPY(PackageIndex)
    QScopedPointer<PackageIndexPrivate> d;
};

} // namespace ts::pm
