#include "index/packageindex.h"
#include "liststage.h"
#include "presentation/packagelistdiff_p.h"

#include <QRandomGenerator>
#include <QtTest>

#include <numeric>
#include <optional>

using namespace ts::pm;
using namespace ts::pm::test;

namespace {

using Rows = QVector<int>;

constexpr int packageCount = 90;

/** The steps from one list to another of one index, found by the plainest means; nothing if there are none.
 */
std::optional<QStringList> plainSteps(const Rows &before, const Rows &after)
{
    QStringList steps;
    Rows work = before;
    for (int last = before.size() - 1; last >= 0; --last) {
        int first = last + 1;
        while (first > 0 && !after.contains(before.at(first - 1)))
            --first;
        if (first > last)
            continue;
        steps.append("remove %1-%2"_s.arg(first).arg(last));
        work.remove(first, last - first + 1);
        last = first;
    }
    for (int first = 0; first < after.size(); ++first) {
        int end = first;
        for (; end < after.size() && !before.contains(after.at(end)); ++end)
            work.insert(end, after.at(end));
        if (end > first)
            steps.append("insert %1-%2"_s.arg(first).arg(end - 1));
        first = end;
    }
    for (;;) {
        int from = 0;
        int to = 0;
        for (int row = 0; row < work.size(); ++row) {
            const int target = after.indexOf(work.at(row));
            if (std::abs(row - target) > std::abs(from - to))
                std::tie(from, to) = std::tie(row, target);
        }
        if (from == to)
            return steps;
        if (to == 0)
            return std::nullopt;
        steps.append("move %1 to %2"_s.arg(from).arg(to));
        work.move(from, to);
    }
}

} // namespace

class tst_PackageListDiff : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void randomLists();

private:
    int upTo(int largest) { return random.bounded(largest + 1); }
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

// A whole shuffle nearly always needs a move to the first row, so most lists are changed in a few places
// only, or keep their first row.
Rows tst_PackageListDiff::variationOf(Rows rows)
{
    const int kind = upTo(4);
    if (kind == 0) {
        rows.resize(packageCount);
        std::iota(rows.begin(), rows.end(), 0);
    }
    if (kind <= 1)
        std::shuffle(rows.begin() + kind, rows.end(), random);
    if (kind == 0)
        rows.resize(1 + upTo(59));
    for (int changes = upTo(20); changes > 0 && kind > 0; --changes) {
        const int spare = upTo(packageCount - 1);
        if (!rows.contains(spare) && rows.size() < 60)
            rows.insert(upTo(rows.size()), spare);
        if (rows.size() > 1 && upTo(1) == 0)
            rows.removeAt(upTo(rows.size() - 1));
    }
    for (int moves = upTo(4); moves > 0 && kind > 1; --moves)
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
    const auto listOf = [&all](const Rows &rows) {
        QVector<const PackageNode *> nodes;
        for (const int row : rows)
            nodes.append(all.at(row));
        return PackageList(all.index(), nodes);
    };
    Rows before(packageCount);
    std::iota(before.begin(), before.end(), 0);
    QVector<int> kinds(3);
    for (int i = 0; i < 1000; ++i) {
        const Rows after = variationOf(before);
        const std::optional<QStringList> expected = plainSteps(before, after);
        PackageListDiff diff(nullptr, listOf(before), listOf(after));
        QCOMPARE(diff.steps(noWait).size(), expected ? expected->size() : 0);
        ++kinds[!expected ? 0 : expected->join(""_s).contains(" to "_s) ? 1 : 2];
        if (!expected)
            continue;
        QStringList listed;
        for (const int row : after)
            listed.append(ids.at(row));
        stage.list(listed);
        QCOMPARE(stage.told().remove(", countChanged"_s), expected->join(", "_s));
        QCOMPARE(stage.log.rows(), listed.join(QString()));
        before = after;
    }
    QVERIFY2(*std::min_element(kinds.begin(), kinds.end()) > 30, "Some kind of change hardly occurs");
}

QTEST_GUILESS_MAIN(tst_PackageListDiff)
#include "tst_packagelistdiff.moc"
