#pragma once

#include "testexport_p.h"

#include <QVector>

namespace ts::pm {

/**
 * Finds the moves of single rows that bring a list into order: again and again the row that is farthest from
 * its place, of several the first, goes there.
 *
 * Every move takes logarithmic time. The rows form a balanced tree by position; each subtree knows how far
 * its rows are from their places at the most, in either direction, and a move shifts whole subtrees at once.
 *
 * Threads: worker job only.
 */
class TAMSEL_TEST_EXPORT MovePlanner
{
public:
    struct Move
    {
        int from;
        int to;
    };

    /** \a targets gives for each row the row where it belongs; a permutation. */
    explicit MovePlanner(const QVector<int> &targets);

    /** The next move; with equal rows if the list is in order. */
    Move next() const;

    /** Carries out a move that next() returned. */
    void apply(const Move &move);

private:
    struct Node
    {
        int left;
        int right;
        int size;
        int target;
        int displacement; // present row less target row, without the shifts that wait in the nodes above
        int pendingShift; // to be added to all rows below this one
        int largest;      // displacement in this subtree
        int smallest;
    };

    int build(const QVector<int> &targets, int first, int last);
    void shift(int node, int rows);
    void push(int node);
    void pull(int node);
    void split(int node, int size, int &left, int &right);
    int merge(int left, int right);
    quint32 random(quint32 bound);

    QVector<Node> nodes; // 0 is the empty tree
    int root;
    quint64 randomState = 0x9E3779B97F4A7C15U; // any number but 0; a fixed one keeps runs alike
};

} // namespace ts::pm
