#include "index/packagenode.h"

#include "index/categorychains_p.h"
#include "index/keywordnode.h"
#include "index/keywordwalk_p.h"
#include "index/packageindex.h"
#include "index/packageindex_p.h"
#include "index/sortstring_p.h"
#include "index/translatedmanifest_p.h"
#include "repository/packageaccessor.h"
#include "repository/packagerecords.h"

#include <QHash>
#include <QPair>
#include <QVarLengthArray>

#include <memory>

namespace ts::pm {

namespace {

// The count may wrap around.
bool isOlder(const TranslatedManifest &manifest, quint32 generation)
{
    return qint32(manifest.generation - generation) < 0;
}

/** Collects the keywords that a walk along outgoing links reaches, each once for each way to go on from it.
 */
class KeywordCollector
{
public:
    void followOutgoingLink(const PackageIndexLink &first)
    {
        enter(first);
        while (!pending.isEmpty()) {
            const auto [keyword, state] = pending.last();
            pending.removeLast();
            for (const PackageIndexLink &link : keyword->outgoingLinks()) {
                if (allowsLink(state, link.type))
                    enter(link);
            }
        }
    }

    QSet<KeywordNode *> result() const
    {
        QSet<KeywordNode *> keywords;
        keywords.reserve(widestState.size());
        for (auto reached = widestState.begin(); reached != widestState.end(); ++reached)
            keywords.insert(reached.key());
        return keywords;
    }

private:
    // Arriving in a state that allows no more than an earlier one leads to nothing new.
    void enter(const PackageIndexLink &link)
    {
        KeywordNode *keyword = link.node->toKeyword();
        if (!keyword)
            return;
        const WalkState state = stateAfter(link.type);
        const auto known = widestState.find(keyword);
        if (known == widestState.end())
            widestState.insert(keyword, state);
        else if (state < *known)
            *known = state;
        else
            return;
        pending.append(qMakePair(keyword, state));
    }

    QHash<KeywordNode *, WalkState> widestState;
    QVarLengthArray<QPair<KeywordNode *, WalkState>, 16> pending;
};

} // namespace

PackageNode::PackageNode(const PackageInfo &info, PackageIndex *index, int sourceIndex,
                         int packageIndexInSource)
    : PackageIndexNode(index, PackageKind, index->addString(info.id))
    , packageType(index->addString(info.type))
    , packageRevision(index->addString(info.revision))
    , sourceIndex(sourceIndex)
    , packageIndexInSource(packageIndexInSource)
{
}

PackageNode::~PackageNode()
{
    delete manifestCache.load();
}

bool PackageNode::hasType(const QStringRef &query) const
{
    if (!query.isEmpty() && !packageType.startsWith(query)) // a null string starts with no empty one
        return false;
    return packageType.size() == query.size() || packageType.at(query.size()) == QLatin1Char(':');
}

QSet<KeywordNode *> PackageNode::keywords() const
{
    KeywordCollector collector;
    for (const PackageIndexLink &link : outgoingLinks())
        collector.followOutgoingLink(link);
    QSet<KeywordNode *> keywords = collector.result();
    for (const PackageIndexLink &link : outgoingLinks()) {
        if (link.type == IsNotA && link.node->isKeyword())
            keywords.remove(link.node->toKeyword());
    }
    return keywords;
}

QString PackageNode::sortString() const
{
    if (sortCache.isEmpty()) {
        CategoryChains chains;
        sortCache = SortString(*this, chains).text();
    }
    return sortCache;
}

// Readers take no lock. What they may still look at is retired, not deleted, when a newer one takes its
// place. Only one of an older generation is replaced, so that whoever asks after a change of the language
// gets the new one, even if a reader that began before the change ends in between.
const TranslatedManifest *PackageNode::translatedManifest() const
{
    PackageIndexPrivate &shared = *packageIndex()->d;
    const quint32 generation = shared.manifestGeneration.load(std::memory_order_acquire);
    TranslatedManifest *known = manifestCache.load(std::memory_order_acquire);
    if (known && !isOlder(*known, generation))
        return known;
    const PackageAccessor *accessor = packageIndex()->accessor(sourceIndex);
    auto fresh =
        std::make_unique<TranslatedManifest>(accessor->packageManifest(packageIndexInSource), generation);
    while (!manifestCache.compare_exchange_weak(known, fresh.get(), std::memory_order_acq_rel)) {
        if (known && !isOlder(*known, generation))
            return known; // another thread was faster
    }
    if (known)
        shared.retire(known);
    return fresh.release();
}

QJsonObject PackageNode::manifest() const
{
    return translatedManifest()->manifest;
}

QJsonValue PackageNode::readManifest(const QString &field) const
{
    return translatedManifest()->manifest.value(field);
}

QUrl PackageNode::getFileUrl(const QString &name) const
{
    const InstallLocation location = installLocation();
    if (location.contains(name))
        return QUrl::fromLocalFile(location.pathToFile(name));
    return packageIndex()->accessor(sourceIndex)->packageFileUrl(packageIndexInSource, name);
}

} // namespace ts::pm
