#include "index/packageindexbuilder_p.h"

#include "index/categorychains_p.h"
#include "index/foldedorder_p.h"
#include "index/keyedhash_p.h"
#include "index/keywordnode.h"
#include "index/packagenode.h"
#include "index/sortstring_p.h"
#include "logging_p.h"
#include "repository/packageaccessor.h"
#include "repository/packagerecords.h"

#include <QElapsedTimer>
#include <QLocale>

#include <algorithm>
#include <array>
#include <unordered_map>

namespace ts::pm {

namespace {

constexpr double nanosecondsInMillisecond = 1000000.0;
// More than a processor has memory accesses under way, few enough to stay in its cache.
constexpr int recordsInBlock = 64;
// Each costs a look-up as long as it is. Types of real catalogues are nested a handful of levels deep.
constexpr int mostTypesAbove = 256;
// Packages keep their sort strings. Real catalogues have room for all of them.
constexpr int roomForSortStrings = 128 * 1024 * 1024; // characters, 256 MiB
constexpr int lengthWithoutRoom = 256;                // characters before the id

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
    rankAttributes();
    sortKeywords();
    const PackageTypes types = packageTypes();
    sortPackages(types);
    fillTypeRanges(types);
    d.installLocation = InstallLocation::createRoot();
    d.stringBuffer.close();
    qCDebug(lcPackageIndex) << "Package index build took"
                            << double(timer.nsecsElapsed()) / nanosecondsInMillisecond << "msecs";
}

void PackageIndexBuilder::chooseLanguage()
{
    QStringList languages;
    for (const auto &accessor : d.accessors)
        languages += accessor->keywordLanguages();
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
    addNodes(
        accessor.packageCount(), [&](int j) { return accessor.packageInfo(j); },
        [&](const PackageInfo &info, int j) { return new PackageNode(info, d.q, accessorPosition, j); });
    addNodes(
        accessor.keywordCount(), [&](int j) { return accessor.keywordInfo(j); },
        [&](const KeywordInfo &info, int) { return KeywordNode::create(info, d.q); });
}

// A record without an id is one that its accessor could not read.
template<typename Read, typename Create>
void PackageIndexBuilder::addNodes(int count, Read read, Create create)
{
    d.nodes.reserve(d.nodes.nodes().size() + qMax(count, 0));
    std::array<PackageIndexNode *, recordsInBlock> block{};
    int filled = 0;
    for (int j = 0; j < count; ++j) {
        const auto record = read(j);
        PackageIndexNode *node = record.id.isEmpty() ? nullptr : create(record, j);
        if (node)
            block[size_t(filled++)] = node;
        if (filled == recordsInBlock || j == count - 1) {
            d.nodes.insert(block.data(), filled);
            filled = 0;
        }
    }
}

void PackageIndexBuilder::buildGraph(int accessorPosition)
{
    const PackageAccessor &accessor = *d.accessors[size_t(accessorPosition)];
    const int linkCount = accessor.linkCount();
    ends.reserve(ends.size() + linkCount);
    std::array<LinkInfo, recordsInBlock> records;
    for (int first = 0; first < linkCount; first += recordsInBlock) {
        const int count = qMin(recordsInBlock, linkCount - first);
        for (int i = 0; i < count; ++i)
            records[size_t(i)] = accessor.linkInfo(first + i);
        resolveLinks(records.data(), count);
    }
}

// The look-ups of a block are under way at the same time.
void PackageIndexBuilder::resolveLinks(const LinkInfo *records, int count)
{
    std::array<quint32, recordsInBlock> hashes{};
    for (int i = 0; i < count; ++i)
        hashes[size_t(i)] = d.nodes.announce(QStringRef(&records[i].to));
    for (int i = 0; i < count; ++i)
        d.nodes.approach(hashes[size_t(i)]);
    for (int i = 0; i < count; ++i) {
        const LinkInfo &link = records[i];
        if (link.from.isEmpty() || link.to.isEmpty() || link.type == InvalidLink)
            continue;
        lastFrom = numberNear(lastFrom, QStringRef(&link.from));
        const int to = d.nodes.numberOf(QStringRef(&link.to), hashes[size_t(i)]);
        if (lastFrom >= 0 && to >= 0) {
            qCDebug(lcPackageIndex) << "Creating link between" << link.from << "and" << link.to << "with type"
                                    << int(link.type);
            addLink(lastFrom, {to, link.type});
        } else {
            qCDebug(lcPackageIndex) << "Cannot link between" << link.from << "and" << link.to;
        }
    }
}

// Sources often give the links of one node together, and then those of the next.
int PackageIndexBuilder::numberNear(int number, const QStringRef &id) const
{
    const int end = qMin(number + 2, d.nodes.nodes().size());
    for (int guess = qMax(number, 0); guess < end; ++guess) {
        if (d.nodes.hasId(guess, id))
            return guess;
    }
    return d.nodes.numberOf(id, d.nodes.announce(id));
}

// Sources give the links that start at one node one after the other, so that most nodes have one run of them.
void PackageIndexBuilder::addLink(int from, const LinkEnd &end)
{
    if (runs.isEmpty() || runs.constLast().from != from)
        runs.append({from, 0});
    ++runs.last().count;
    ends.append(end);
}

void PackageIndexBuilder::connectNodes()
{
    connectOutgoing();
    connectIncoming();
    runs = {};
    ends = {};
}

void PackageIndexBuilder::connectOutgoing()
{
    const QVector<PackageIndexNode *> &nodes = d.nodes.nodes();
    auto end = ends.cbegin();
    for (const LinkRun &run : qAsConst(runs)) {
        QVector<PackageIndexLink> &outgoing = nodes.at(run.from)->outgoing;
        if (outgoing.isEmpty())
            outgoing.reserve(run.count);
        for (int i = 0; i < run.count; ++i, ++end)
            outgoing.append({end->type, nodes.at(end->to)});
    }
}

// Links that end at one node come from everywhere. They are counted first, so that each node gets room for
// just its links, and no node is visited again.
void PackageIndexBuilder::connectIncoming()
{
    const QVector<PackageIndexNode *> &nodes = d.nodes.nodes();
    QVector<int> counts(nodes.size(), 0);
    for (const LinkEnd &end : qAsConst(ends))
        ++counts[end.to];
    QVector<PackageIndexLink *> places(nodes.size()); // of the next link
    for (int i = 0; i < nodes.size(); ++i) {
        QVector<PackageIndexLink> &incoming = nodes.at(i)->incoming;
        incoming = QVector<PackageIndexLink>(counts.at(i));
        places[i] = incoming.data();
    }
    auto end = ends.cbegin();
    for (const LinkRun &run : qAsConst(runs)) {
        PackageIndexNode *from = nodes.at(run.from);
        for (int i = 0; i < run.count; ++i, ++end)
            *places[end->to]++ = {end->type, from};
    }
}

void PackageIndexBuilder::collectNodes()
{
    d.packages.reserve(d.nodes.nodes().size());
    for (PackageIndexNode *node : d.nodes.nodes()) {
        if (KeywordNode *keyword = node->toKeyword())
            d.keywords.append(keyword);
        else
            d.packages.append(node->toPackage());
    }
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
    FoldedOrder order({d.keywords.size()});
    for (const KeywordNode *keyword : qAsConst(d.keywords))
        order.add(0, keyword->displayString());
    applyOrder(d.keywords, order.sorted());
    for (int i = 0; i < d.keywords.size(); ++i)
        d.keywords[i]->position = i;
}

// By type, then by sort string without regard to case.
void PackageIndexBuilder::sortPackages(const PackageTypes &types)
{
    QVector<int> sizes;
    for (const PackageType &type : types.sorted)
        sizes.append(type.packageCount);
    FoldedOrder order(sizes);
    CategoryChains longChains;
    qint64 room = roomForSortStrings;
    for (int i = 0; i < d.packages.size(); ++i) {
        const PackageNode *package = d.packages.at(i);
        QString &sortString = package->sortCache;
        sortString =
            SortString(*package, longChains).text(room > 0 ? SortString::longestText : lengthWithoutRoom);
        room -= sortString.size();
        order.add(types.ofPackages.at(i), QStringRef(&sortString));
    }
    applyOrder(d.packages, order.sorted());
    for (int i = 0; i < d.packages.size(); ++i)
        d.packages[i]->position = i;
}

PackageIndexBuilder::PackageTypes PackageIndexBuilder::packageTypes() const
{
    PackageTypes types;
    types.ofPackages.reserve(d.packages.size());
    std::unordered_map<QStringRef, int, KeyedHash> numbers;
    for (const PackageNode *package : qAsConst(d.packages)) {
        const auto [known, isNew] = numbers.try_emplace(package->type(), types.sorted.size());
        const int number = known->second;
        if (isNew)
            types.sorted.append({package->type(), 0});
        ++types.sorted[number].packageCount;
        types.ofPackages.append(number);
    }
    std::sort(types.sorted.begin(), types.sorted.end(),
              [](const PackageType &a, const PackageType &b) { return a.name < b.name; });
    QVector<int> places(types.sorted.size());
    for (int i = 0; i < types.sorted.size(); ++i)
        places[numbers.at(types.sorted.at(i).name)] = i;
    for (int &type : types.ofPackages)
        type = places.at(type);
    return types;
}

void PackageIndexBuilder::fillTypeRanges(const PackageTypes &types)
{
    int first = 0;
    for (const PackageType &type : types.sorted) {
        const int last = first + type.packageCount - 1;
        enterTypeRange(type.name, first, last);
        int end = -1;
        for (int above = 0; above < mostTypesAbove; ++above) {
            end = type.name.indexOf(QLatin1Char(':'), end + 1);
            if (end < 0)
                break;
            enterTypeRange(type.name.left(end), first, last);
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
