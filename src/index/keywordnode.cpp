#include "index/keywordnode.h"

#include "index/packageindex_p.h"
#include "index/packagenode.h"
#include "repository/packagerecords.h"

#include <QSet>

#include <algorithm>
#include <limits>
#include <optional>

namespace ts::pm {

namespace {

constexpr int largestWalk = 1000000; // links; real catalogues stay far below

constexpr QPair<int, int> allPositions(-1, std::numeric_limits<int>::max()); // -1: of no index that is built

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
 * that makes the judgement of a path one look at the top. The entry of a package of the type stays on the
 * stack when its path is refused, and counts against the links that are tried after it.
 */
class TypeSearch
{
public:
    TypeSearch(const QStringRef &type, const QPair<int, int> &typeRange)
        : type(type)
        , typeRange(typeRange)
    {
    }

    bool reaches(const KeywordNode *keyword)
    {
        path.insert(keyword);
        const QVector<PackageIndexLink> &links = keyword->incomingLinks();
        return std::any_of(links.begin(), links.end(),
                           [this](const PackageIndexLink &link) { return hasPathToType(link); });
    }

private:
    struct Level
    {
        const PackageIndexNode *node;
        int nextLink;
    };

    // With a new stack for each link of the keyword.
    bool hasPathToType(const PackageIndexLink &first)
    {
        allowedBelow.clear();
        refused = 0;
        lowestHopeless = nowhere;
        bool found = enter(first);
        while (!found && !levels.isEmpty() && !isHopeless()) {
            Level &level = levels.last();
            if (level.nextLink == level.node->incomingLinks().size())
                leave();
            else
                found = enter(level.node->incomingLinks().at(level.nextLink++));
        }
        while (!levels.isEmpty())
            leave();
        return found;
    }

    // No later path can be allowed: the entries of refused packages, which stay, keep the stack from falling
    // below an entry that nothing may precede.
    bool isHopeless() const
    {
        return linksLeft <= 0 || (lowestHopeless != nowhere && refused >= lowestHopeless);
    }

    bool enter(const PackageIndexLink &link)
    {
        if (--linksLeft < 0)
            return false;
        const bool isTarget = isOfType(link.node);
        if (!isTarget && (link.node->incomingLinks().isEmpty() || path.contains(link.node)))
            return false;
        push(link.type);
        if (isTarget) {
            ++refused;
            return allowedBelow.constLast() & (1U << AnyPath);
        }
        path.insert(link.node);
        levels.append({link.node, 0});
        return false;
    }

    bool isOfType(const PackageIndexNode *node) const
    {
        const PackageNode *package = node->toPackage();
        return package && package->indexPosition() >= typeRange.first
               && package->indexPosition() <= typeRange.second && package->hasType(type);
    }

    void leave()
    {
        path.remove(levels.constLast().node);
        levels.removeLast();
        allowedBelow.removeLast();
        if (lowestHopeless == allowedBelow.size())
            lowestHopeless = nowhere;
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
        if (!allowed && lowestHopeless == nowhere)
            lowestHopeless = allowedBelow.size();
        allowedBelow.append(allowed);
    }

    static constexpr int nowhere = -1;

    const QStringRef type;
    const QPair<int, int> typeRange; // all packages of the type, and some of its neighbours
    int linksLeft = largestWalk;
    QSet<const PackageIndexNode *> path; // nodes on it are not entered again
    QVector<Level> levels;
    QVector<quint8> allowedBelow; // for each link on the stack, the set of states that may precede it
    int lowestHopeless = nowhere; // height of the lowest entry on the stack that nothing may precede
    int refused = 0; // packages of the type that were refused below the present link of the keyword
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
    if (indexPosition() < 0) // in none of the ranges, like the packages that it is linked with
        return TypeSearch(type, allPositions).reaches(this);
    const QMap<QStringRef, QPair<int, int>> &ranges = packageIndex()->d->typeRanges;
    const auto range = ranges.constFind(type);
    return range != ranges.constEnd() && TypeSearch(type, *range).reaches(this);
}

} // namespace ts::pm
