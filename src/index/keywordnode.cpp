#include "index/keywordnode.h"

#include "index/packageindex.h"
#include "index/packagenode.h"
#include "repository/packagerecords.h"

#include <QSet>

#include <optional>

namespace ts::pm {

namespace {

constexpr int largestWalk = 1000000; // links; real catalogues stay far below

// What may come next on the way from a package down to a keyword, as decided by the links nearer the package.
enum Allowed { AnyPath, ContainsOrRelatesTo, RelatesToOnly, ContainsOnly, AllowedCount };

// After "is" a path may go on with "contains", while the walk of PackageNode::keywords() goes on with
// "relates to". Catalogues rely on both.
std::optional<Allowed> following(Allowed allowed, LinkType type)
{
    switch (type) {
    case IsA:
        return allowed == AnyPath ? std::optional(AnyPath) : std::nullopt;
    case Contains:
        return allowed == RelatesToOnly ? std::nullopt : std::optional(ContainsOrRelatesTo);
    case RelatesTo:
        return allowed == ContainsOnly ? std::nullopt : std::optional(RelatesToOnly);
    case Is:
        return allowed == AnyPath ? std::optional(ContainsOnly) : std::nullopt;
    case IsNotA:
    case Uses:
    case Requires:
    case InvalidLink:
        break;
    }
    return std::nullopt;
}

/**
 * Walks up the incoming links of a keyword to a package of one type whose path is allowed.
 *
 * The links taken lie on a stack, the one nearest the keyword at the bottom. A path is judged from the top of
 * the stack down, so for each height the stack remembers from which states the rest below would be allowed:
 * that makes the judgement of a path one look at the top.
 */
class TypeSearch
{
public:
    explicit TypeSearch(const QStringRef &type)
        : type(type)
    {
    }

    bool reaches(const KeywordNode *keyword)
    {
        path.insert(keyword);
        for (const PackageIndexLink &link : keyword->incomingLinks()) {
            allowedBelow.clear();
            if (follow(link))
                return true;
            if (linksLeft < 0)
                return false;
        }
        return false;
    }

private:
    struct Level
    {
        const PackageIndexNode *node;
        int nextLink;
    };

    bool follow(const PackageIndexLink &first)
    {
        if (enter(first))
            return true;
        while (!levels.isEmpty()) {
            Level &level = levels.last();
            if (linksLeft < 0)
                return false;
            if (level.nextLink == level.node->incomingLinks().size())
                leave();
            else if (enter(level.node->incomingLinks().at(level.nextLink++)))
                return true;
        }
        return false;
    }

    // The entry of a package of the type stays on the stack when its path is refused, and counts against the
    // links that are tried after it.
    bool enter(const PackageIndexLink &link)
    {
        --linksLeft;
        const PackageNode *package = link.node->toPackage();
        const bool isTarget = package && package->hasType(type);
        if (!isTarget && (link.node->incomingLinks().isEmpty() || path.contains(link.node)))
            return false;
        push(link.type);
        if (isTarget)
            return allowedBelow.constLast() & (1U << AnyPath);
        path.insert(link.node);
        levels.append({link.node, 0});
        return false;
    }

    void leave()
    {
        path.remove(levels.constLast().node);
        levels.removeLast();
        allowedBelow.removeLast();
    }

    void push(LinkType linkType)
    {
        const quint8 below = allowedBelow.isEmpty() ? quint8(0xFF) : allowedBelow.constLast();
        quint8 allowed = 0;
        for (int state = 0; state < AllowedCount; ++state) {
            const std::optional<Allowed> next = following(Allowed(state), linkType);
            if (next && (below & (1U << *next)))
                allowed |= quint8(1U << state);
        }
        allowedBelow.append(allowed);
    }

    const QStringRef type;
    int linksLeft = largestWalk;
    QSet<const PackageIndexNode *> path; // nodes on it are not entered again
    QVector<Level> levels;
    QVector<quint8> allowedBelow; // for each link on the stack, the set of states that may precede it
};

} // namespace

KeywordNode::KeywordNode(const KeywordInfo &info, PackageIndex *index)
    : PackageIndexNode(index, KeywordKind, index->addString(info.id))
{
}

KeywordNode::~KeywordNode() = default;

bool KeywordNode::isCategory() const
{
    return false;
}

bool KeywordNode::linksToPackageType(const QStringRef &type) const
{
    return TypeSearch(type).reaches(this);
}

} // namespace ts::pm
