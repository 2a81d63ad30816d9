#pragma once

#include "index/nodenumbers_p.h"
#include "index/packageindex_p.h"
#include "index/packageindexnode.h"
#include "repository/link.h"

#include <QVector>

namespace ts::pm {

struct LinkInfo;

/**
 * Builds an index: creates the nodes of all accessors, links them, and puts them in order.
 *
 * Used once, alone, on the worker thread that builds.
 */
class PackageIndexBuilder
{
public:
    explicit PackageIndexBuilder(PackageIndexPrivate &index);

    void build();

private:
    // Ends are numbers of created nodes.
    struct ResolvedLink
    {
        int from;
        int to;
        LinkType type;
    };
    using LinkEnd = int ResolvedLink::*;
    using LinkVector = QVector<PackageIndexLink> PackageIndexNode::*;

    void chooseLanguage();
    void buildIndex(int accessorPosition);
    void reserveNodes(int more);
    void addNode(PackageIndexNode *node);
    void buildGraph(int accessorPosition);
    void resolveLinks(const LinkInfo *records, int count);
    void connectNodes();
    void connectNodes(LinkEnd here, LinkEnd there, LinkVector vector);
    void enterIds();
    void collectNodes();
    void rankAttributes();
    void sortKeywords();
    void sortPackages();
    QVector<int> typeRanks() const;
    void fillTypeRanges();
    void enterTypeRange(const QStringRef &type, int first, int last);

    PackageIndexPrivate &d;
    QVector<PackageIndexNode *> created; // the nodes in order of creation, which is also that of their memory
    NodeNumbers numbers;                 // of created nodes, by id
    QVector<ResolvedLink> links;
};

} // namespace ts::pm
