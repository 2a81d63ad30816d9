#include "index/packageindex.h"
#include "liststage.h"
#include "presentation/moveplanner_p.h"
#include "presentation/packagelistdiff_p.h"
#include "presentation/packagerows_p.h"
#include "presentation/sortbyintegerfield.h"

#include <QRandomGenerator>
#include <QtTest>

#include <algorithm>
#include <numeric>
#include <optional>

using namespace ts::pm;
using namespace ts::pm::test;

namespace {

using Rows = QVector<int>;
using Nodes = QVector<const PackageNode *>;

constexpr int packageCount = 90;

MovePlanner::Move farthest(const Rows &work, const QHash<int, int> &target)
{
    MovePlanner::Move move{0, 0};
    for (int i = 0; i < work.size(); ++i) {
        const int t = target.value(work.at(i));
        if (i != t && std::abs(i - t) > std::abs(move.from - move.to))
            move = {i, t};
    }
    return move;
}

void addTo(QVector<QPair<int, int>> &runs, int row)
{
    if (runs.isEmpty() || std::abs(runs.last().second - row) > 1)
        runs.append({row, row});
    else
        runs.last().second = row;
}

/** The steps from one list to another of one index, found by the plainest means; nothing if there are none.
 */
std::optional<QStringList> plainSteps(const Rows &before, const Rows &after)
{
    QStringList steps;
    Rows work = before;
    QVector<QPair<int, int>> removed;
    for (int row = before.size() - 1; row >= 0; --row) {
        if (!after.contains(before.at(row)))
            addTo(removed, row);
    }
    for (const auto &[last, first] : qAsConst(removed)) {
        steps.append("remove %1-%2"_s.arg(first).arg(last));
        work.remove(first, last - first + 1);
    }
    QVector<QPair<int, int>> inserted;
    QHash<int, int> target;
    for (int row = 0; row < after.size(); ++row) {
        target.insert(after.at(row), row);
        if (!before.contains(after.at(row))) {
            addTo(inserted, row);
            work.insert(row, after.at(row));
        }
    }
    for (const auto &[first, last] : qAsConst(inserted))
        steps.append("insert %1-%2"_s.arg(first).arg(last));
    for (;;) {
        const MovePlanner::Move move = farthest(work, target);
        if (move.from == move.to)
            return steps;
        if (move.to == 0)
            return std::nullopt;
        steps.append("move %1 to %2"_s.arg(move.from).arg(move.to));
        work.move(move.from, move.to);
    }
}

} // namespace

class tst_PackageListDiff : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void randomLists();
    void longListReversed();
    void planner();
    void rows();

private:
    int upTo(int largest) { return random.bounded(largest + 1); }
    Rows someRows();
    Rows variationOf(Rows rows);

    QRandomGenerator random;
};

void tst_PackageListDiff::initTestCase()
{
    const int given = qEnvironmentVariableIntValue("TAMSEL_TEST_SEED");
    const quint32 seed = given ? quint32(given) : QRandomGenerator::global()->bounded(1U, quint32(INT_MAX));
    qInfo("TAMSEL_TEST_SEED=%u", seed);
    random.seed(seed);
}

Rows tst_PackageListDiff::someRows()
{
    Rows rows(packageCount);
    std::iota(rows.begin(), rows.end(), 0);
    std::shuffle(rows.begin(), rows.end(), random);
    rows.resize(1 + upTo(59));
    return rows;
}

// Whole shuffles nearly always need a move to the first row, so most lists are changed in a few places only.
Rows tst_PackageListDiff::variationOf(Rows rows)
{
    if (upTo(4) == 0)
        return someRows();
    for (int changes = upTo(20); changes > 0; --changes) {
        const int spare = upTo(packageCount - 1);
        if (!rows.contains(spare) && rows.size() < 60)
            rows.insert(upTo(rows.size()), spare);
        if (rows.size() > 1 && upTo(1) == 0)
            rows.removeAt(upTo(rows.size() - 1));
    }
    for (int moves = upTo(4); moves > 0; --moves)
        rows.move(upTo(rows.size() - 1), qMin(1 + upTo(rows.size()), rows.size() - 1));
    return rows;
}

void tst_PackageListDiff::randomLists()
{
    QStringList ids;
    for (int i = 0; i < packageCount; ++i)
        ids.append(QString::number(100 + i)); // a package and its row in the index have the same place
    const auto noWait = std::make_shared<std::atomic<bool>>(true);
    ListStage stage(ids);
    const auto all = PackageIndex::selectPackages(stage.repository()->packageIndex(), {}, {}, {});
    Rows before(packageCount);
    std::iota(before.begin(), before.end(), 0);
    QVector<int> kinds(3);
    for (int i = 0; i < 1000; ++i) {
        const Rows after = variationOf(before);
        const std::optional<QStringList> expected = plainSteps(before, after);
        QStringList listed;
        Nodes shown;
        Nodes selected;
        for (const int row : after) {
            listed.append(ids.at(row));
            selected.append(all.at(row));
        }
        for (const int row : qAsConst(before))
            shown.append(all.at(row));
        PackageListDiff diff(nullptr, {all.index(), shown}, {all.index(), selected});
        QCOMPARE(diff.steps(noWait).size(), expected ? expected->size() : 0);
        ++kinds[!expected ? 0 : expected->join(""_s).contains(" to "_s) ? 1 : 2];
        if (!expected)
            continue;
        stage.list(listed);
        QCOMPARE(stage.told().remove(", countChanged"_s), expected->join(", "_s));
        QCOMPARE(stage.log.rows(), listed.join(", "_s));
        before = after;
    }
    QVERIFY2(*std::min_element(kinds.begin(), kinds.end()) > 30, "Some kind of change hardly occurs");
}

void tst_PackageListDiff::longListReversed()
{
    constexpr int count = 10000;
    Stage stage;
    for (int i = 0; i < count; ++i)
        stage.catalogue.addPackage(QString::number(count + i), {}, {{"place"_s, count - i}});
    stage.publish();
    PackageListModel model;
    model.setPackageProvider(&stage.provider);
    Stage::settle();
    int moves = 0;
    connect(&model, &PackageListModel::rowsMoved, this, [&moves] { ++moves; });
    SortByIntegerField sorter;
    sorter.setName("place"_s);
    model.setSorter(&sorter);
    QTRY_COMPARE_WITH_TIMEOUT(moves, count - 1, 60000);
    for (int row = 0; row < count; ++row)
        QCOMPARE(model.packageAt(row), QString::number(2 * count - 1 - row));
}

void tst_PackageListDiff::planner()
{
    for (int i = 0; i < 60; ++i) {
        Rows work(1 + upTo(400));
        std::iota(work.begin(), work.end(), 0);
        QHash<int, int> target;
        for (const int row : qAsConst(work))
            target.insert(row, row);
        if (i % 2 == 0)
            std::shuffle(work.begin(), work.end(), random);
        else
            std::rotate(work.begin(), work.begin() + upTo(work.size() - 1), work.end());
        MovePlanner planner(work);
        for (int moves = 0; moves <= 2 * work.size(); ++moves) {
            const MovePlanner::Move expected = farthest(work, target);
            const MovePlanner::Move move = planner.next();
            QCOMPARE(qMakePair(move.from, move.to), qMakePair(expected.from, expected.to));
            if (move.from == move.to)
                break;
            planner.apply(move);
            work.move(move.from, move.to);
        }
    }
}

void tst_PackageListDiff::rows()
{
    Stage stage;
    for (int i = 0; i < packageCount; ++i)
        stage.catalogue.addPackage(QString::number(i));
    stage.publish();
    const auto all = PackageIndex::selectPackages(stage.repository()->packageIndex(), {}, {}, {});
    PackageRows rows;
    Nodes plain;
    PackageList held;
    Nodes heldNodes;
    for (int i = 0; i < 5000; ++i) {
        if (upTo(19) == 0) {
            held = rows.toList();
            heldNodes = Nodes(held.begin(), held.end());
        }
        const int size = plain.size();
        const int row = size > 0 ? upTo(size - 1) : 0;
        const int kind = size > 0 ? upTo(40) : 39;
        const PackageList block(all.index(), all.nodes().mid(upTo(packageCount - 1), upTo(9) + 1));
        if (kind < 16) {
            const int last = row + upTo(qMin(size - row - 1, 5));
            rows.remove(row, last);
            plain.remove(row, last - row + 1);
        } else if (kind < 28) {
            const int to = upTo(size - 1);
            rows.move(row, to);
            plain.move(row, to);
        } else if (kind < 40) {
            const int before = upTo(size);
            rows.insert(before, block);
            plain = plain.mid(0, before) + block.nodes() + plain.mid(before);
        } else {
            rows.reset(block);
            plain = block.nodes();
        }
        QVERIFY(held.nodes() == heldNodes); // what was handed out does not change
        QCOMPARE(rows.index(), all.index());
        QCOMPARE(rows.size(), plain.size());
        for (int j = 0; j < plain.size(); ++j)
            QVERIFY2(rows.at(j) == plain.at(j), qPrintable("Operation %1, row %2"_s.arg(i).arg(j)));
    }
}

QTEST_GUILESS_MAIN(tst_PackageListDiff)
#include "tst_packagelistdiff.moc"
