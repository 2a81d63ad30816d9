#pragma once

#include "index/packageindex_p.h"
#include "repository/link.h"

#include <QVector>

namespace ts::pm {

class PackageIndexNode;

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
    struct ResolvedLink
    {
        PackageIndexNode *from;
        PackageIndexNode *to;
        LinkType type;
    };

    void chooseLanguage();
    void buildIndex(int accessorPosition);
    void addNode(PackageIndexNode *node);
    void buildGraph(int accessorPosition);
    void connectNodes();
    void collectNodes();
    void rankAttributes();
    void sortKeywords();
    void sortPackages();
    QVector<int> typeRanks() const;
    void fillTypeRanges();
    void enterTypeRange(const QStringRef &type, int first, int last);

    PackageIndexPrivate &d;
    QVector<PackageIndexNode *> created; // the nodes in order of creation, which is also that of their memory
    QVector<ResolvedLink> links;
};

} // namespace ts::pm
