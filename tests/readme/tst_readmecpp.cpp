#include <QProcess>
#include <QtTest>

class tst_ReadmeCpp : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void listsItsPackages();
};

void tst_ReadmeCpp::listsItsPackages()
{
    QProcess example;
    example.setWorkingDirectory(QStringLiteral(README_EXAMPLES));
    example.start(QStringLiteral(README_PROGRAM), QStringList());
    QVERIFY2(example.waitForFinished(), qPrintable(example.errorString()));
    QCOMPARE(example.exitStatus(), QProcess::NormalExit);
    QCOMPARE(example.exitCode(), 0);
    QCOMPARE(example.readAllStandardOutput(), QByteArray("oak: Oak\n"));
    QCOMPARE(example.readAllStandardError(), QByteArray());
}

QTEST_GUILESS_MAIN(tst_ReadmeCpp)
#include "tst_readmecpp.moc"
