#include "index/sortstring_p.h"

#include "index/categorychains_p.h"
#include "index/keywordnode.h"
#include "index/packagenode.h"

#include <algorithm>

namespace ts::pm {

namespace {

// Hardly any package of a real catalogue goes beyond these.
constexpr int longestShortChain = 16; // entries
constexpr int linksOfFew = 32;

QStringRef textOf(const PackageIndexNode *node)
{
    return node->toKeyword()->sortString();
}

} // namespace

SortString::SortString(const PackageNode &package, CategoryChains &longChains)
    : package(package)
{
    if (!collectShortChain())
        takeChain(longChains.of(package));
    collectAttributes();
}

// False if the chain is to be found in another way, since looking at the whole way for each link takes long.
bool SortString::collectShortChain()
{
    chain.append({&package, -1});
    for (int i = 0; i < chain.size(); ++i) {
        const QVector<PackageIndexLink> &links = chain[i].node->outgoingLinks();
        if (i > 0 && links.size() > linksOfFew)
            return false;
        for (const PackageIndexLink &link : links) {
            if (link.type != IsA || !link.node->isKeyword() || isOnPath(link.node, i))
                continue;
            if (chain.size() == longestShortChain)
                return false;
            chain.append({link.node, i});
        }
    }
    return true;
}

void SortString::takeChain(const QVector<const PackageIndexNode *> &nodes)
{
    chain.clear();
    for (const PackageIndexNode *node : nodes)
        chain.append({node, -1});
}

bool SortString::isOnPath(const PackageIndexNode *node, int end) const
{
    for (int i = end; i >= 0; i = chain[i].reachedFrom) {
        if (chain[i].node == node)
            return true;
    }
    return false;
}

void SortString::collectAttributes()
{
    for (const PackageIndexLink &link : package.outgoingLinks()) {
        if (link.type != Contains && link.type != Is)
            continue;
        if (const KeywordNode *keyword = link.node->toKeyword())
            attributes.append({link.type, keyword});
    }
    std::sort(attributes.begin(), attributes.end(), linkLess);
}

bool SortString::linkLess(const Attribute &a, const Attribute &b)
{
    if (a.linkType != b.linkType)
        return a.linkType < b.linkType;
    if (a.keyword->collationRank >= 0 && b.keyword->collationRank >= 0)
        return a.keyword->collationRank < b.keyword->collationRank;
    return QStringRef::localeAwareCompare(a.keyword->sortString(), b.keyword->sortString()) < 0;
}

qint64 SortString::length() const
{
    qint64 length = chain.size() + attributes.size() + 2 + package.id().size();
    for (int i = 1; i < chain.size(); ++i)
        length += textOf(chain[i].node).size();
    for (const Attribute &attribute : attributes)
        length += attribute.keyword->sortString().size();
    return length;
}

QString SortString::text(int longest) const
{
    QString text;
    text.reserve(int(qMin(length(), qint64(longest) + 1 + package.id().size())));
    const auto add = [&](const QStringRef &part) { text += part.left(longest - text.size()); };
    for (int i = chain.size() - 1; i > 0 && text.size() < longest; --i) {
        add(textOf(chain[i].node));
        if (i > 1)
            text += QLatin1Char('>');
    }
    if (!attributes.isEmpty() && !text.isEmpty())
        text += QLatin1Char(':');
    for (int i = 0; i < attributes.size() && text.size() < longest; ++i) {
        if (i > 0)
            text += QLatin1Char('&');
        add(attributes[i].keyword->sortString());
    }
    text.truncate(longest);
    text += QLatin1Char('#');
    text += package.id();
    return text;
}

} // namespace ts::pm
