#pragma once

#include "index/keywordnode.h"
#include "index/packageindex.h"
#include "index/packagenode.h"

#include "support/literals.h"
#include "support/memorysource.h"

namespace ts::pm::test {

/** Builds an index from catalogues in ascending priority. */
inline QSharedPointer<PackageIndex> buildIndex(const QVector<MemoryCatalogue> &catalogues,
                                               const MemoryOffer::Installers &installers = {})
{
    const auto index = QSharedPointer<PackageIndex>::create();
    for (const MemoryCatalogue &catalogue : catalogues) {
        MemorySource source;
        source.catalogue = catalogue;
        source.installers = installers;
        index->addSource(&source);
    }
    index->build();
    return index;
}

/**
 * The nodes and links of a text such as "p1 is_a k, k contains m, p2/a:b". Ids that begin with p are
 * packages, of the type behind the slash or of type "t"; others are names that read like their id in each
 * language.
 */
inline MemoryCatalogue graph(const QString &text)
{
    MemoryCatalogue catalogue;
    QSet<QString> known;
    const auto node = [&](const QString &word) {
        const QString id = word.section(QLatin1Char('/'), 0, 0);
        if (known.contains(id))
            return id;
        known.insert(id);
        if (id.startsWith(QLatin1Char('p')))
            catalogue.addPackage(id, id == word ? "t"_s : word.section(QLatin1Char('/'), 1));
        else
            catalogue.addKeyword(id, Keyword::Name, id, id);
        return id;
    };
    const QStringList links = text.split(", "_s, Qt::SkipEmptyParts);
    for (const QString &link : links) {
        const QStringList words = link.split(QLatin1Char(' '));
        const QString from = node(words.first());
        if (words.size() == 3)
            catalogue.addLink(from, Link::typeFromString(words.at(1)), node(words.at(2)));
    }
    return catalogue;
}

/** Links of a graph with two nodes in each layer, a and b, each linked to both of the next one. */
inline QString diamonds(int layers, const QString &link)
{
    QStringList links;
    for (int layer = 1; layer < layers; ++layer) {
        for (const QString &ends : {"aa"_s, "ab"_s, "ba"_s, "bb"_s})
            links.append(link.arg(ends.at(0)).arg(layer).arg(ends.at(1)).arg(layer + 1));
    }
    return links.join(", "_s);
}

inline PackageNode *package(const QSharedPointer<PackageIndex> &index, const QString &id)
{
    return index->getPackage(QStringRef(&id));
}

inline KeywordNode *keyword(const QSharedPointer<PackageIndex> &index, const QString &id)
{
    return index->getKeyword(QStringRef(&id));
}

/** The ids of nodes in their order, as in "p1 p2". */
template<typename Nodes>
QString ids(const Nodes &nodes)
{
    QStringList ids;
    for (const PackageIndexNode *node : nodes)
        ids.append(node->id().toString());
    return ids.join(QLatin1Char(' '));
}

} // namespace ts::pm::test
