#pragma once

#include "repository/link.h"

#include <QString>
#include <QVarLengthArray>
#include <QVector>

namespace ts::pm {

class CategoryChains;
class KeywordNode;
class PackageIndexNode;
class PackageNode;

/** Puts together the text that places a package among those of its type: a>b>c:x&y#id. */
class SortString
{
public:
    /** Finds short chains by itself, and has \a longChains find the others. */
    SortString(const PackageNode &package, CategoryChains &longChains);

    /** Characters before the id; real catalogues stay far below. */
    static constexpr int longestText = 65536;

    /** The text, cut to \a longest characters before the id. */
    QString text(int longest = longestText) const;

private:
    struct ChainEntry
    {
        const PackageIndexNode *node;
        int reachedFrom; // position in the chain, -1 for the package itself; of short chains only
    };
    struct Attribute
    {
        LinkType linkType;
        const KeywordNode *keyword;
    };

    bool collectShortChain();
    void takeChain(const QVector<const PackageIndexNode *> &nodes);
    bool isOnPath(const PackageIndexNode *node, int end) const;
    void collectAttributes();
    static bool linkLess(const Attribute &a, const Attribute &b);
    qint64 length() const;

    const PackageNode &package;
    QVarLengthArray<ChainEntry, 16> chain; // the package, then its categories, the nearest first
    QVarLengthArray<Attribute, 8> attributes;
};

} // namespace ts::pm
