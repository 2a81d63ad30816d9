#include "graph.h"

#include "support/literals.h"
#include "support/logcapture.h"

#include <QtTest>

using namespace ts::pm;
using namespace ts::pm::test;

namespace {

constexpr int bits = 44; // of a text that are free to choose; 12 more than a hash has

QString textOf(quint64 choice)
{
    QString text;
    for (int i = 0; i < bits; i += 4)
        text += QChar(0x40 + int((choice >> i) & 0xf));
    return text;
}

// Qt has a faster hash for tables that are seeded, which all are.
uint hashOf(quint64 choice)
{
    return qHash(textOf(choice), 1);
}

/** Choices whose texts all have the hash of textOf(0), if a hash is the exclusive or of what its bits give.
 */
QVector<quint64> collidingChoices()
{
    struct Row
    {
        uint hash;
        quint64 choice;
    };
    QVector<Row> basis;
    QVector<quint64> kernel{0};
    for (int bit = 0; bit < bits; ++bit) {
        Row row{hashOf(Q_UINT64_C(1) << bit) ^ hashOf(0), Q_UINT64_C(1) << bit};
        for (const Row &known : qAsConst(basis)) {
            if ((row.hash ^ known.hash) < row.hash)
                row = {row.hash ^ known.hash, row.choice ^ known.choice};
        }
        if (row.hash != 0) {
            basis.append(row);
            continue;
        }
        const QVector<quint64> smaller = kernel;
        for (const quint64 choice : smaller)
            kernel.append(choice ^ row.choice);
    }
    return kernel;
}

} // namespace

class tst_CollidingIds : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // Whoever fills a catalogue can choose ids of one hash; each would make the next a little slower to add.
    void areTakenInSmallNumbersOnly()
    {
        QVector<quint64> choices = collidingChoices();
        if (choices.size() < 4096 || hashOf(choices.at(1)) != hashOf(choices.last()))
            QSKIP("The hashes of this system's Qt do not collide by plan");
        MemoryCatalogue catalogue;
        for (const quint64 choice : qAsConst(choices))
            catalogue.addPackage(textOf(choice));
        catalogue.addPackage("innocent"_s);
        const LogCapture log("tamsel.package.index"_s);
        const auto index = buildIndex({catalogue});
        QCOMPARE(index->packageCount(), 65);
        QVERIFY(package(index, "innocent"_s));
        QVERIFY(package(index, textOf(choices.at(63))));
        QVERIFY(!package(index, textOf(choices.at(64))));
    }
};

QTEST_GUILESS_MAIN(tst_CollidingIds)
#include "tst_collidingids.moc"
