#pragma once

#include <QVector>

#include <bitset>
#include <unordered_map>

namespace ts::pm {

class PackageIndexNode;
class PackageNode;

/**
 * Finds the categories of packages whose chains are long, or lead through keywords with many links.
 *
 * What it reads of a keyword it keeps for the next package. A keyword in a chain then costs those that it
 * adds and one look at each of those on the way to it that it links to, however many links do so.
 */
class CategoryChains
{
public:
    /** Keywords in a chain; real catalogues stay far below. */
    static constexpr int longest = 256;

    /** The package, then the keywords that its "is a" links lead to, the nearest first. */
    QVector<const PackageIndexNode *> of(const PackageNode &package);

private:
    struct Node;
    struct Link
    {
        Node *category;
        int next; // place of the next link to the same category, -1 if there is none
    };
    struct Node
    {
        const PackageIndexNode *source = nullptr;
        QVector<Link> links;
        QVector<int> firsts; // places of the first link to each category
        bool isRead = false;
        int chain = 0; // the last one that the node got into, and its number there
        int number = 0;
    };
    using Path = std::bitset<longest + 1>; // numbers of nodes
    struct Entry
    {
        Node *node;
        Path path; // from the package to this node
    };

    bool isFull() const { return entries.size() > longest; }
    void readLinks(Node &node);
    void append(Node &node, Path path);
    void appendCategories(const Node &node, const Path &path);
    bool isOnPath(const Node &node, const Path &path) const;

    std::unordered_map<const PackageIndexNode *, Node> keywords;
    QVector<Entry> entries; // of the present chain
    int chain = 0;
};

} // namespace ts::pm
