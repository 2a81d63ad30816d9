#include "index/categorychains_p.h"

#include "index/packagenode.h"

#include <QHash>

#include <functional>
#include <queue>
#include <vector>

namespace ts::pm {

QVector<const PackageIndexNode *> CategoryChains::of(const PackageNode &package)
{
    ++chain;
    entries.clear();
    Node root;
    root.source = &package;
    append(root, Path());
    for (int i = 0; i < entries.size() && !isFull(); ++i) {
        const Entry entry = entries.at(i);
        readLinks(*entry.node);
        appendCategories(*entry.node, entry.path);
    }
    QVector<const PackageIndexNode *> nodes;
    nodes.reserve(entries.size());
    for (const Entry &entry : qAsConst(entries))
        nodes.append(entry.node->source);
    return nodes;
}

void CategoryChains::readLinks(Node &node)
{
    if (node.isRead)
        return;
    node.isRead = true;
    QHash<const Node *, int> lastPlaces;
    for (const PackageIndexLink &link : node.source->outgoingLinks()) {
        if (link.type != IsA || !link.node->isKeyword())
            continue;
        const int place = node.links.size();
        Node &category = keywords[link.node];
        category.source = link.node;
        const auto last = lastPlaces.find(&category);
        if (last == lastPlaces.end()) {
            node.firsts.append(place);
            lastPlaces.insert(&category, place);
        } else {
            node.links[*last].next = place;
            *last = place;
        }
        node.links.append({&category, -1});
    }
}

void CategoryChains::append(Node &node, Path path)
{
    if (node.chain != chain) {
        node.chain = chain;
        node.number = entries.size();
    }
    path.set(size_t(node.number));
    entries.append({&node, path});
}

// In the order of the links. Of each category only the next link is in the queue, and of the categories only
// as many as there is room for.
void CategoryChains::appendCategories(const Node &node, const Path &path)
{
    const size_t room = size_t(longest + 1 - entries.size());
    std::priority_queue<int, std::vector<int>, std::greater<>> places;
    for (const int first : node.firsts) {
        if (isOnPath(*node.links.at(first).category, path))
            continue;
        places.push(first);
        if (places.size() == room)
            break;
    }
    while (!places.empty() && !isFull()) {
        const Link &link = node.links.at(places.top());
        places.pop();
        append(*link.category, path);
        if (link.next >= 0)
            places.push(link.next);
    }
}

bool CategoryChains::isOnPath(const Node &node, const Path &path) const
{
    return node.chain == chain && path.test(size_t(node.number));
}

} // namespace ts::pm
