#include "index/packageindexbuilder_p.h"

#include "index/foldedorder_p.h"
#include "index/keywordnode.h"
#include "index/packagenode.h"
#include "logging_p.h"
#include "repository/packageaccessor.h"

#include <QElapsedTimer>
#include <QLocale>
#include <QSet>

#include <algorithm>
#include <array>
#include <numeric>

namespace ts::pm {

namespace {

constexpr double nanosecondsInMillisecond = 1000000.0;
// More than a processor has memory accesses under way, few enough to stay in its cache.
constexpr int linksInBlock = 64;

template<typename Node>
void applyOrder(QVector<Node *> &nodes, const QVector<int> &order)
{
    QVector<Node *> ordered;
    ordered.reserve(nodes.size());
    for (const int position : order)
        ordered.append(nodes.at(position));
    nodes = ordered;
}

bool isAttributeLink(const PackageIndexLink &link)
{
    return (link.type == Contains || link.type == Is) && link.node->isPackage();
}

bool isAttribute(const KeywordNode *keyword)
{
    const QVector<PackageIndexLink> &incoming = keyword->incomingLinks();
    return std::any_of(incoming.begin(), incoming.end(), isAttributeLink);
}

} // namespace

PackageIndexBuilder::PackageIndexBuilder(PackageIndexPrivate &index)
    : d(index)
{
}

void PackageIndexBuilder::build()
{
    QElapsedTimer timer;
    timer.start();
    const int accessorCount = int(d.accessors.size());
    chooseLanguage();
    for (int i = 0; i < accessorCount; ++i)
        buildIndex(i);
    for (int i = 0; i < accessorCount; ++i)
        buildGraph(i);
    connectNodes();
    enterIds();
    collectNodes();
    sortKeywords();
    sortPackages();
    fillTypeRanges();
    d.installLocation = InstallLocation::createRoot();
    d.stringBuffer.close();
    qCDebug(lcPackageIndex) << "Package index build took"
                            << double(timer.nsecsElapsed()) / nanosecondsInMillisecond << "msecs";
}

void PackageIndexBuilder::chooseLanguage()
{
    QSet<QString> languages;
    for (const auto &accessor : d.accessors) {
        const QStringList offered = accessor->keywordLanguages();
        languages.unite(QSet<QString>(offered.begin(), offered.end()));
    }
    const QString locale = QLocale().name();
    const QString language = locale.section(QLatin1Char('_'), 0, 0);
    if (languages.contains(locale))
        d.activeLanguage = d.stringBuffer.addString(locale);
    else if (languages.contains(language))
        d.activeLanguage = d.stringBuffer.addString(language);
    else
        d.activeLanguage = d.stringBuffer.addString(QStringLiteral("en"));
}

void PackageIndexBuilder::buildIndex(int accessorPosition)
{
    PackageAccessor &accessor = *d.accessors[size_t(accessorPosition)];
    accessor.initialize();
    const int packageCount = accessor.packageCount();
    reserveNodes(packageCount);
    for (int j = 0; j < packageCount; ++j)
        addNode(new PackageNode(accessor.packageInfo(j), d.q, accessorPosition, j));
    const int keywordCount = accessor.keywordCount();
    reserveNodes(keywordCount);
    for (int j = 0; j < keywordCount; ++j) {
        if (KeywordNode *keyword = KeywordNode::create(accessor.keywordInfo(j), d.q))
            addNode(keyword);
    }
}

void PackageIndexBuilder::reserveNodes(int more)
{
    created.reserve(created.size() + more);
    numbers.reserve(created.size() + more);
}

// The last record of an id wins, whatever kind of node an earlier one made.
void PackageIndexBuilder::addNode(PackageIndexNode *node)
{
    const int number = numbers.insert(node->id(), created.size());
    if (number < 0) {
        qCWarning(lcPackageIndex) << "Too many ids with the hash of" << node->id();
        delete node;
    } else if (number == created.size()) {
        created.append(node);
    } else {
        delete created.at(number);
        created[number] = node;
    }
}

void PackageIndexBuilder::buildGraph(int accessorPosition)
{
    const PackageAccessor &accessor = *d.accessors[size_t(accessorPosition)];
    const int linkCount = accessor.linkCount();
    links.reserve(links.size() + linkCount);
    std::array<LinkInfo, linksInBlock> records;
    for (int first = 0; first < linkCount; first += linksInBlock) {
        const int count = qMin(linksInBlock, linkCount - first);
        for (int i = 0; i < count; ++i)
            records[size_t(i)] = accessor.linkInfo(first + i);
        resolveLinks(records.data(), count);
    }
}

// The look-ups of a block are under way at the same time.
void PackageIndexBuilder::resolveLinks(const LinkInfo *records, int count)
{
    std::array<quint32, linksInBlock> hashes{};
    for (int i = 0; i < count; ++i)
        hashes[size_t(i)] = numbers.announce(QStringRef(&records[i].to));
    for (int i = 0; i < count; ++i)
        numbers.approach(hashes[size_t(i)]);
    int from = -1;
    for (int i = 0; i < count; ++i) {
        const LinkInfo &link = records[i];
        if (link.from.isEmpty() || link.to.isEmpty() || link.type == InvalidLink)
            continue;
        // Sources often give the links of one node together.
        if (from < 0 || created.at(from)->id() != link.from)
            from = numbers.find(QStringRef(&link.from), numbers.announce(QStringRef(&link.from)));
        const int to = numbers.find(QStringRef(&link.to), hashes[size_t(i)]);
        if (from >= 0 && to >= 0) {
            qCDebug(lcPackageIndex) << "Creating link between" << link.from << "and" << link.to << "with type"
                                    << int(link.type);
            links.append({from, to, link.type});
        } else {
            qCDebug(lcPackageIndex) << "Cannot link between" << link.from << "and" << link.to;
        }
    }
}

void PackageIndexBuilder::connectNodes()
{
    connectNodes(&ResolvedLink::from, &ResolvedLink::to, &PackageIndexNode::outgoing);
    connectNodes(&ResolvedLink::to, &ResolvedLink::from, &PackageIndexNode::incoming);
    links.clear();
    links.squeeze();
}

// Puts the links into the order of the nodes that they are seen from before any node is touched, so that each
// node is visited once and gets room for just its links: they are most of what an index holds.
void PackageIndexBuilder::connectNodes(LinkEnd here, LinkEnd there, LinkVector vector)
{
    QVector<int> ends(created.size() + 1, 0);
    for (const ResolvedLink &link : qAsConst(links))
        ++ends[link.*here + 1];
    std::partial_sum(ends.begin(), ends.end(), ends.begin());
    QVector<PackageIndexLink> ordered(links.size());
    for (const ResolvedLink &link : qAsConst(links))
        ordered[ends[link.*here]++] = {link.type, created.at(link.*there)};
    int first = 0;
    for (int i = 0; i < created.size(); ++i) {
        if (ends.at(i) > first)
            created.at(i)->*vector =
                QVector<PackageIndexLink>(ordered.cbegin() + first, ordered.cbegin() + ends.at(i));
        first = ends.at(i);
    }
}

void PackageIndexBuilder::enterIds()
{
    d.nodes.reserve(created.size());
    for (PackageIndexNode *node : qAsConst(created))
        d.nodes.insert(node->id(), node);
}

void PackageIndexBuilder::collectNodes()
{
    d.packages.reserve(created.size());
    for (PackageIndexNode *node : qAsConst(created)) {
        if (KeywordNode *keyword = node->toKeyword())
            d.keywords.append(keyword);
        else
            d.packages.append(node->toPackage());
    }
    created.clear();
    rankAttributes();
}

void PackageIndexBuilder::rankAttributes()
{
    QVector<KeywordNode *> attributes;
    std::copy_if(d.keywords.begin(), d.keywords.end(), std::back_inserter(attributes), isAttribute);
    const auto compare = [](const KeywordNode *a, const KeywordNode *b) {
        return QStringRef::localeAwareCompare(a->sortString(), b->sortString());
    };
    std::sort(attributes.begin(), attributes.end(),
              [&](const KeywordNode *a, const KeywordNode *b) { return compare(a, b) < 0; });
    for (int i = 0; i < attributes.size(); ++i) {
        const bool tie = i > 0 && compare(attributes.at(i - 1), attributes.at(i)) == 0;
        attributes[i]->collationRank = tie ? attributes.at(i - 1)->collationRank : i;
    }
}

void PackageIndexBuilder::sortKeywords()
{
    FoldedOrder order;
    for (const KeywordNode *keyword : qAsConst(d.keywords))
        order.add(0, keyword->displayString());
    applyOrder(d.keywords, order.sorted());
    for (int i = 0; i < d.keywords.size(); ++i)
        d.keywords[i]->position = i;
}

// By type, then by sort string without regard to case.
void PackageIndexBuilder::sortPackages()
{
    const QVector<int> ranks = typeRanks();
    FoldedOrder order;
    order.reserve(d.packages.size());
    for (int i = 0; i < d.packages.size(); ++i) {
        const QString sortString = d.packages.at(i)->sortString();
        order.add(ranks.at(i), QStringRef(&sortString));
    }
    applyOrder(d.packages, order.sorted());
    for (int i = 0; i < d.packages.size(); ++i)
        d.packages[i]->position = i;
}

// For each package the place of its type among the types.
QVector<int> PackageIndexBuilder::typeRanks() const
{
    QHash<QStringRef, int> ranks;
    for (const PackageNode *package : qAsConst(d.packages))
        ranks.insert(package->type(), 0);
    QList<QStringRef> types = ranks.keys();
    std::sort(types.begin(), types.end());
    for (int i = 0; i < types.size(); ++i)
        ranks[types.at(i)] = i;
    QVector<int> ranksOfPackages;
    ranksOfPackages.reserve(d.packages.size());
    for (const PackageNode *package : qAsConst(d.packages))
        ranksOfPackages.append(ranks.value(package->type()));
    return ranksOfPackages;
}

void PackageIndexBuilder::fillTypeRanges()
{
    for (int first = 0; first < d.packages.size();) {
        const QStringRef type = d.packages.at(first)->type();
        int last = first;
        while (last + 1 < d.packages.size() && d.packages.at(last + 1)->type() == type)
            ++last;
        enterTypeRange(type, first, last);
        for (int end = type.size() - 1; end >= 0; --end) {
            if (type.at(end) == QLatin1Char(':'))
                enterTypeRange(type.left(end), first, last);
        }
        first = last + 1;
    }
}

// Ranges only grow: a type whose name sorts between a type and its sub-types lies within the range.
void PackageIndexBuilder::enterTypeRange(const QStringRef &type, int first, int last)
{
    auto range = d.typeRanges.find(type);
    if (range == d.typeRanges.end())
        range = d.typeRanges.insert(type, {first, last});
    range->second = last;
}

} // namespace ts::pm
