#pragma once

#include <QSharedPointer>
#include <QVector>

#include <utility>

namespace ts::pm {

class KeywordNode;
class PackageIndex;
class PackageNode;

/**
 * Nodes of an index, together with a share in the index that keeps them alive.
 *
 * A value, cheap to copy. A default-constructed list has no index and no nodes.
 *
 * Threads: immutable, any thread.
 */
template<typename Node>
class NodeList
{
public:
    NodeList() = default;
    NodeList(QSharedPointer<PackageIndex> index, QVector<const Node *> nodes)
        : sharedIndex(std::move(index))
        , nodeVector(std::move(nodes))
    {
    }

    /** The index that the nodes belong to; null for a default-constructed list. */
    const QSharedPointer<PackageIndex> &index() const { return sharedIndex; }

    const QVector<const Node *> &nodes() const { return nodeVector; }
    int size() const { return nodeVector.size(); }
    bool isEmpty() const { return nodeVector.isEmpty(); }
    const Node *at(int position) const { return nodeVector.at(position); }
    typename QVector<const Node *>::const_iterator begin() const { return nodeVector.cbegin(); }
    typename QVector<const Node *>::const_iterator end() const { return nodeVector.cend(); }

private:
    QSharedPointer<PackageIndex> sharedIndex;
    QVector<const Node *> nodeVector;
};

/** Packages of an index, as PackageIndex::selectPackages() returns them. */
class PackageList : public NodeList<PackageNode>
{
public:
    using NodeList::NodeList;
};

/** Keywords of an index, as PackageIndex::selectKeywords() returns them. */
class KeywordList : public NodeList<KeywordNode>
{
public:
    using NodeList::NodeList;
};

} // namespace ts::pm
