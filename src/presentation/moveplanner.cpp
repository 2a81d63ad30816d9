#include "presentation/moveplanner_p.h"

#include <algorithm>

namespace ts::pm {

namespace {

constexpr int empty = 0;

} // namespace

MovePlanner::MovePlanner(const QVector<int> &targets)
{
    nodes.reserve(targets.size() + 1);
    nodes.append({empty, empty, 0, 0, 0, 0, 0, 0});
    root = build(targets, 0, targets.size());
}

int MovePlanner::build(const QVector<int> &targets, int first, int last)
{
    if (first == last)
        return empty;
    const int middle = first + (last - first) / 2;
    const int displacement = middle - targets.at(middle);
    const int node = nodes.size();
    nodes.append({empty, empty, 1, targets.at(middle), displacement, 0, displacement, displacement});
    const int left = build(targets, first, middle);
    const int right = build(targets, middle + 1, last);
    nodes[node].left = left;
    nodes[node].right = right;
    pull(node);
    return node;
}

MovePlanner::Move MovePlanner::next() const
{
    const int farthest = std::max(nodes.at(root).largest, -nodes.at(root).smallest);
    if (farthest == 0)
        return {0, 0};
    int node = root;
    int shifts = 0;
    int before = 0;
    for (;;) {
        const Node &here = nodes.at(node);
        const int below = shifts + here.pendingShift;
        const Node &left = nodes.at(here.left);
        if (here.left != empty && (left.largest + below == farthest || left.smallest + below == -farthest)) {
            node = here.left;
        } else if (std::abs(here.displacement + shifts) == farthest) {
            return {before + left.size, here.target};
        } else {
            before += left.size + 1;
            node = here.right;
        }
        shifts = below;
    }
}

void MovePlanner::apply(const Move &move)
{
    int before = empty;
    int moved = empty;
    int after = empty;
    split(root, move.from, before, after);
    split(after, 1, moved, after);
    shift(after, -1);
    const int rest = merge(before, after);
    split(rest, move.to, before, after);
    shift(moved, move.to - move.from);
    shift(after, +1);
    root = merge(merge(before, moved), after);
}

void MovePlanner::shift(int node, int rows)
{
    if (node == empty)
        return;
    Node &here = nodes[node];
    here.displacement += rows;
    here.pendingShift += rows;
    here.largest += rows;
    here.smallest += rows;
}

void MovePlanner::push(int node)
{
    const int rows = nodes.at(node).pendingShift;
    if (rows == 0)
        return;
    shift(nodes.at(node).left, rows);
    shift(nodes.at(node).right, rows);
    nodes[node].pendingShift = 0;
}

// Needs pendingShift to be 0, as it is after push().
void MovePlanner::pull(int node)
{
    Node &here = nodes[node];
    here.size = 1;
    here.largest = here.displacement;
    here.smallest = here.displacement;
    for (const int child : {here.left, here.right}) {
        if (child == empty)
            continue;
        const Node &below = nodes.at(child);
        here.size += below.size;
        here.largest = std::max(here.largest, below.largest);
        here.smallest = std::min(here.smallest, below.smallest);
    }
}

// The first \a size rows go to the left tree.
void MovePlanner::split(int node, int size, int &left, int &right)
{
    if (node == empty) {
        left = empty;
        right = empty;
        return;
    }
    push(node);
    int part = empty;
    const int leftSize = nodes.at(nodes.at(node).left).size;
    if (size <= leftSize) {
        split(nodes.at(node).left, size, left, part);
        nodes[node].left = part;
        right = node;
    } else {
        split(nodes.at(node).right, size - leftSize - 1, part, right);
        nodes[node].right = part;
        left = node;
    }
    pull(node);
}

// A root drawn by size keeps the tree balanced without any further bookkeeping.
int MovePlanner::merge(int left, int right)
{
    if (left == empty || right == empty)
        return left == empty ? right : left;
    const int leftSize = nodes.at(left).size;
    if (random(quint32(leftSize + nodes.at(right).size)) < quint32(leftSize)) {
        push(left);
        const int merged = merge(nodes.at(left).right, right);
        nodes[left].right = merged;
        pull(left);
        return left;
    }
    push(right);
    const int merged = merge(left, nodes.at(right).left);
    nodes[right].left = merged;
    pull(right);
    return right;
}

quint32 MovePlanner::random(quint32 bound)
{
    randomState ^= randomState << 13;
    randomState ^= randomState >> 7;
    randomState ^= randomState << 17;
    return quint32(((randomState >> 32) * bound) >> 32);
}

} // namespace ts::pm
