#include "server/packageledger.h"

#include "support/literals.h"
#include "support/logcapture.h"
#include "support/signedledger.h"

#include <QtTest>

using namespace ts::pm;
using namespace ts::pm::test;

class tst_PackageLedger : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void acceptsSignedLedger()
    {
        SignedLedger signedLedger;
        signedLedger.addPackage("oak", "plant:tree", R"({"type":"x","name":"Oak","n":1.5})",
                                {{"icon.png", "png"}, {"a.txt", "a"}});
        const PackageLedger ledger(signedLedger.toByteArray(), QByteArray("tag"));
        QVERIFY(ledger.valid);
        QCOMPARE(ledger.packages.size(), 1);
        QVERIFY(ledger.findPackage("oak"));
        signedLedger.records.packages[0].files[0].path.append('x');
        QVERIFY(!PackageLedger(signedLedger.toByteArray(), QByteArray("tag")).valid);
    }
};

QTEST_GUILESS_MAIN(tst_PackageLedger)

#include "tst_packageledger.moc"
