#pragma once

#include "index/packageindex_p.h"
#include "index/packageindexnode.h"
#include "repository/link.h"

#include <QVector>

namespace ts::pm {

struct LinkInfo;

/**
 * Builds an index: creates the nodes of all accessors, links them, and puts them in order.
 *
 * Threads: worker job only. A builder builds once.
 */
class PackageIndexBuilder
{
public:
    explicit PackageIndexBuilder(PackageIndexPrivate &index);

    void build();

private:
    // Links, one after the other, that start at one node. Nodes are told by their numbers.
    struct LinkRun
    {
        int from;
        int count;
    };
    struct LinkEnd
    {
        int to;
        LinkType type;
    };
    struct PackageType
    {
        QStringRef name;
        int packageCount;
    };
    struct PackageTypes
    {
        QVector<PackageType> sorted;
        QVector<int> ofPackages; // the place of the type of each package
    };

    void chooseLanguage();
    void buildIndex(int accessorPosition);
    template<typename Read, typename Create>
    void addNodes(int count, Read read, Create create);
    void buildGraph(int accessorPosition);
    void resolveLinks(const LinkInfo *records, int count);
    int numberNear(int number, const QStringRef &id) const;
    void addLink(int from, const LinkEnd &end);
    void connectNodes();
    void connectOutgoing();
    void connectIncoming();
    void collectNodes();
    void rankAttributes();
    void sortKeywords();
    PackageTypes packageTypes() const;
    void sortPackages(const PackageTypes &types);
    void fillTypeRanges(const PackageTypes &types);
    void enterTypeRange(const QStringRef &type, int first, int last);

    PackageIndexPrivate &d;
    QVector<LinkRun> runs;
    QVector<LinkEnd> ends; // of the links of all runs
    int lastFrom = -1;     // where the last link that was read starts, if known
};

} // namespace ts::pm
