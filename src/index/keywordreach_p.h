#pragma once

#include "index/packageindex.h"
#include "testexport_p.h"

#include <QVector>

#include <atomic>
#include <functional>
#include <memory>

namespace ts::pm {

class KeywordNode;
class PackageNode;

/**
 * For one index and one test on keywords: from which keywords a walk leads to one that passes.
 *
 * Costs a pass over all keywords and the links between them. After that, whether a package carries such a
 * keyword takes one look at each of its links, instead of the collection of all its keywords.
 *
 * Threads: immutable, any thread, as long as the index is held.
 */
class KeywordReach
{
public:
    using Test = std::function<bool(const KeywordNode *)>;

    KeywordReach(const PackageIndex &index, const Test &test);

    bool isFor(const PackageIndex &index) const;

    /** Whether one of package.keywords() passes the test. */
    bool leadsFrom(const PackageNode &package) const;

private:
    bool hasPassingKeyword(const PackageNode &package) const;

    const quint64 indexSerial;
    // By position of the keyword: bit s is set if a walk that arrives in WalkState s leads on to a keyword
    // that passes, or has arrived at one. The walk that arrives in the state NoLink leads nowhere, so that
    // its bit tells whether the keyword itself passes.
    QVector<quint8> flags;
};

/**
 * A package filter: takes the packages that carry a keyword that passes a test.
 *
 * Copies share what has been found out about the index that the first call was for. Calls for other indexes,
 * and for packages that no index has built, are answered without it.
 *
 * Threads: immutable, any thread. What copies share is published atomically, and does not change any more.
 */
class TAMSEL_TEST_EXPORT KeywordPredicate
{
public:
    explicit KeywordPredicate(const KeywordReach::Test &test);

    bool operator()(PackageNode *package) const;

private:
    struct Shared;
    const KeywordReach *reachFor(const PackageNode &package) const;

    std::shared_ptr<Shared> shared;
};

} // namespace ts::pm
