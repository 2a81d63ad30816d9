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

namespace ts::pm {

namespace {

constexpr double nanosecondsInMillisecond = 1000000.0;

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
    d.nodes.reserve(d.nodes.size() + packageCount);
    for (int j = 0; j < packageCount; ++j)
        addNode(new PackageNode(accessor.packageInfo(j), d.q, accessorPosition, j));
    const int keywordCount = accessor.keywordCount();
    d.nodes.reserve(d.nodes.size() + keywordCount);
    for (int j = 0; j < keywordCount; ++j) {
        if (KeywordNode *keyword = KeywordNode::create(accessor.keywordInfo(j), d.q))
            addNode(keyword);
    }
}

// The last record of an id wins, whatever kind of node an earlier one made.
void PackageIndexBuilder::addNode(PackageIndexNode *node)
{
    PackageIndexNode *&place = d.nodes[node->id()];
    if (place) {
        node->position = place->position;
        created[node->position] = node;
        delete place;
    } else {
        node->position = created.size();
        created.append(node);
    }
    place = node;
}

void PackageIndexBuilder::buildGraph(int accessorPosition)
{
    const PackageAccessor &accessor = *d.accessors[size_t(accessorPosition)];
    const int linkCount = accessor.linkCount();
    links.reserve(links.size() + linkCount);
    PackageIndexNode *from = nullptr;
    for (int j = 0; j < linkCount; ++j) {
        const LinkInfo link = accessor.linkInfo(j);
        if (link.from.isEmpty() || link.to.isEmpty() || link.type == InvalidLink)
            continue;
        if (!from || from->id() != link.from) // sources often give the links of one node together
            from = d.nodes.value(QStringRef(&link.from));
        PackageIndexNode *to = d.nodes.value(QStringRef(&link.to));
        if (from && to) {
            qCDebug(lcPackageIndex) << "Creating link between" << from->id() << "and" << to->id()
                                    << "with type" << int(link.type);
            links.append({from, to, link.type});
        } else {
            qCDebug(lcPackageIndex) << "Cannot link between" << link.from << "and" << link.to;
        }
    }
}

// Room for the links of each node is made at once: links are most of what an index holds.
void PackageIndexBuilder::connectNodes()
{
    QVector<int> outgoing(created.size(), 0);
    QVector<int> incoming(created.size(), 0);
    for (const ResolvedLink &link : qAsConst(links)) {
        ++outgoing[link.from->position];
        ++incoming[link.to->position];
    }
    for (PackageIndexNode *node : qAsConst(created)) {
        if (outgoing.at(node->position) > 0)
            node->outgoing.reserve(outgoing.at(node->position));
        if (incoming.at(node->position) > 0)
            node->incoming.reserve(incoming.at(node->position));
    }
    for (const ResolvedLink &link : qAsConst(links))
        link.from->linkTo(link.to, link.type);
    links.clear();
}

void PackageIndexBuilder::collectNodes()
{
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
    qint64 characters = 0;
    for (const PackageNode *package : qAsConst(d.packages))
        characters += package->sortString().size();
    FoldedOrder order;
    order.reserve(d.packages.size(), characters);
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
    QMap<QStringRef, int> ranks;
    for (const PackageNode *package : qAsConst(d.packages))
        ranks.insert(package->type(), 0);
    int rank = 0;
    for (int &typeRank : ranks)
        typeRank = rank++;
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
