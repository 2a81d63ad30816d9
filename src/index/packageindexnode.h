#pragma once

#include "repository/link.h"
#include "tamselpackagemanager_export.h"

#include <QStringRef>
#include <QVector>

namespace ts::pm {

class KeywordNode;
class PackageIndex;
class PackageIndexNode;
class PackageNode;

/** One edge of the graph, as seen from one of its ends. */
struct PackageIndexLink
{
    LinkType type;
    /** The other end. */
    PackageIndexNode *node;
};

/**
 * A node of the index: a package or a keyword.
 *
 * Ownership: nodes belong to their index, and are valid as long as somebody holds a shared pointer to it.
 * Threads: immutable, any thread, once the index is published.
 */
class TAMSELPACKAGEMANAGER_EXPORT PackageIndexNode
{
public:
    enum Kind { PackageKind = 0, KeywordKind = 1 };

    virtual ~PackageIndexNode();

    PackageIndex *packageIndex() const { return index; }
    const QStringRef &id() const { return nodeId; }

    bool isPackage() const { return kind == PackageKind; }
    bool isKeyword() const { return kind == KeywordKind; }

    /** This node as a package, null if it is a keyword. */
    PackageNode *toPackage();
    const PackageNode *toPackage() const;

    /** This node as a keyword, null if it is a package. */
    KeywordNode *toKeyword();
    const KeywordNode *toKeyword() const;

    /** The links that end here, with the nodes where they start. */
    const QVector<PackageIndexLink> &incomingLinks() const { return incoming; }

    /** The links that start here, with the nodes where they end. */
    const QVector<PackageIndexLink> &outgoingLinks() const { return outgoing; }

    /** The place among the packages, or the keywords, of the index; meaningful once the build has ended. */
    int indexPosition() const { return position; }

    /** Adds a link from this node to \a other. Nothing is checked, and equal links add up. Build only. */
    void linkTo(PackageIndexNode *other, LinkType type);

protected:
    PackageIndexNode(PackageIndex *index, Kind kind, const QStringRef &id);

private:
    friend class PackageIndexBuilder;
    Q_DISABLE_COPY(PackageIndexNode)

    PackageIndex *const index;
    const QStringRef nodeId; // in the string buffer of the index
    const int kind;
    int position = -1;
    QVector<PackageIndexLink> incoming;
    QVector<PackageIndexLink> outgoing;
};

} // namespace ts::pm

Q_DECLARE_TYPEINFO(ts::pm::PackageIndexLink, Q_PRIMITIVE_TYPE);
