#include "index/keywordreach_p.h"

#include "index/keywordnode.h"
#include "index/keywordwalk_p.h"
#include "index/packageindex_p.h"
#include "index/packagenode.h"

#include <QHash>
#include <QSet>
#include <QVarLengthArray>

#include <algorithm>

namespace ts::pm {

namespace {

constexpr quint8 bitOf(WalkState state)
{
    return quint8(1U << state);
}

constexpr quint8 allStates = (1U << WalkStateCount) - 1;

constexpr quint8 statesThatAllow(LinkType type)
{
    quint8 states = 0;
    for (int state = 0; state < WalkStateCount; ++state) {
        if (allowsLink(WalkState(state), type))
            states |= bitOf(WalkState(state));
    }
    return states;
}

struct Edge
{
    int from;
    LinkType type;
};

// The links between keywords by the keyword where they end. Links from packages, by far the most, are left
// out.
QVector<QVector<Edge>> keywordEdges(const QVector<KeywordNode *> &keywords)
{
    QVector<QVector<Edge>> edges(keywords.size());
    for (const KeywordNode *keyword : keywords) {
        for (const PackageIndexLink &link : keyword->outgoingLinks()) {
            if (link.node->isKeyword())
                edges[link.node->indexPosition()].append({keyword->indexPosition(), link.type});
        }
    }
    return edges;
}

QSet<const PackageIndexNode *> exclusionsOf(const PackageNode &package)
{
    QSet<const PackageIndexNode *> exclusions;
    for (const PackageIndexLink &link : package.outgoingLinks()) {
        if (link.type == IsNotA)
            exclusions.insert(link.node);
    }
    return exclusions;
}

} // namespace

KeywordReach::KeywordReach(const PackageIndex &index, const Test &test)
    : indexSerial(index.d->serial)
    , flags(index.d->keywords.size(), 0)
{
    QVector<int> changed;
    for (const KeywordNode *keyword : qAsConst(index.d->keywords)) {
        if (test(keyword)) {
            flags[keyword->indexPosition()] = allStates;
            changed.append(keyword->indexPosition());
        }
    }
    if (changed.isEmpty())
        return;
    const QVector<QVector<Edge>> edges = keywordEdges(index.d->keywords);
    while (!changed.isEmpty()) {
        const int reached = changed.takeLast();
        for (const Edge &edge : edges.at(reached)) {
            if (!(flags.at(reached) & bitOf(stateAfter(edge.type))))
                continue;
            const quint8 before = flags.at(edge.from);
            flags[edge.from] |= statesThatAllow(edge.type);
            if (flags.at(edge.from) != before)
                changed.append(edge.from);
        }
    }
}

bool KeywordReach::isFor(const PackageIndex &index) const
{
    return index.d->serial == indexSerial;
}

bool KeywordReach::leadsFrom(const PackageNode &package) const
{
    bool leads = false;
    bool excludesPassing = false;
    for (const PackageIndexLink &link : package.outgoingLinks()) {
        if (!link.node->isKeyword())
            continue;
        const quint8 states = flags.at(link.node->indexPosition());
        if (link.type == IsNotA)
            excludesPassing |= (states & bitOf(NoLink)) != 0;
        else
            leads |= (states & bitOf(stateAfter(link.type))) != 0;
    }
    // Where the package takes a passing keyword out again, only a walk of its own tells whether another is
    // left.
    return leads && (!excludesPassing || hasPassingKeyword(package));
}

// Takes only ways that lead to keywords that pass, and ends at the first of these that is not taken out.
bool KeywordReach::hasPassingKeyword(const PackageNode &package) const
{
    QHash<int, WalkState> widestStates; // of the keywords entered, by position
    QVarLengthArray<const PackageIndexNode *, 16> pending;
    const auto enter = [&](const PackageIndexLink &link) {
        if (!link.node->isKeyword())
            return;
        const int position = link.node->indexPosition();
        const WalkState state = stateAfter(link.type);
        if (!(flags.at(position) & bitOf(state)) || widestStates.value(position, WalkStateCount) <= state)
            return;
        widestStates.insert(position, state);
        pending.append(link.node);
    };
    const QSet<const PackageIndexNode *> exclusions = exclusionsOf(package);
    for (const PackageIndexLink &link : package.outgoingLinks())
        enter(link);
    while (!pending.isEmpty()) {
        const PackageIndexNode *keyword = pending.last();
        pending.removeLast();
        if (flags.at(keyword->indexPosition()) & bitOf(NoLink) && !exclusions.contains(keyword))
            return true;
        const WalkState state = widestStates.value(keyword->indexPosition());
        for (const PackageIndexLink &link : keyword->outgoingLinks()) {
            if (allowsLink(state, link.type))
                enter(link);
        }
    }
    return false;
}

struct KeywordPredicate::Shared
{
    explicit Shared(const KeywordReach::Test &test)
        : test(test)
    {
    }
    ~Shared() { delete reach.load(); }

    const KeywordReach::Test test;
    std::atomic<const KeywordReach *> reach{nullptr};

private:
    Q_DISABLE_COPY(Shared)
};

KeywordPredicate::KeywordPredicate(const KeywordReach::Test &test)
    : shared(std::make_shared<Shared>(test))
{
}

// Null if another index came first, and for packages that no index has built: what they link to may be in
// none either.
const KeywordReach *KeywordPredicate::reachFor(const PackageNode &package) const
{
    if (package.indexPosition() < 0)
        return nullptr;
    const PackageIndex &index = *package.packageIndex();
    const KeywordReach *reach = shared->reach.load(std::memory_order_acquire);
    if (!reach) {
        auto fresh = std::make_unique<const KeywordReach>(index, shared->test);
        if (shared->reach.compare_exchange_strong(reach, fresh.get(), std::memory_order_acq_rel))
            reach = fresh.release();
    }
    return reach->isFor(index) ? reach : nullptr;
}

bool KeywordPredicate::operator()(PackageNode *package) const
{
    if (const KeywordReach *reach = reachFor(*package))
        return reach->leadsFrom(*package);
    const QSet<KeywordNode *> keywords = package->keywords();
    return std::any_of(keywords.begin(), keywords.end(), shared->test);
}

} // namespace ts::pm
