#include "storage/localpackageinstaller.h"

#include "support/literals.h"
#include "support/logcapture.h"
#include "support/manualinstaller.h"
#include "support/table.h"

#include <QtTest>

using namespace ts::pm;
using namespace ts::pm::test;

namespace {

constexpr auto everyEntry = QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot;

ManualInstaller *dependencyOf(PackageInstaller *installer)
{
    auto *dependency = new ManualInstaller;
    installer->addDependency(dependency);
    return dependency;
}

QString nameOf(PackageInstaller::Status status)
{
    return QVariant::fromValue(status).toString();
}

} // namespace

class tst_PackageInstaller : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // R running, S succeeded, F failed: the job itself first, then those that it depends on.
    void foldsStatus()
    {
        for (const Row &row : rows(R"(
            S SS SSS          | Succeeded
            F FS SF FF SSF    | Failed
            R RS SR RF FR SFR | Running)")) {
            for (const QString &members : row[0].split(QLatin1Char(' '))) {
                for (const bool dependenciesFirst : {true, false}) {
                    ManualInstaller root;
                    QSignalSpy changed(&root, &PackageInstaller::statusChanged);
                    QVector<ManualInstaller *> installers{&root};
                    while (installers.size() < members.size())
                        installers.append(dependencyOf(&root));
                    for (int i = 0; i < members.size(); ++i) {
                        const int member = dependenciesFirst ? members.size() - 1 - i : i;
                        QCOMPARE(root.status(), PackageInstaller::Running);
                        if (members.at(member) == QLatin1Char('S'))
                            installers.at(member)->succeed();
                        else if (members.at(member) == QLatin1Char('F'))
                            installers.at(member)->fail();
                    }
                    root.updateStatus();
                    QCOMPARE(members + nameOf(root.status()), members + row[1]);
                    QCOMPARE(changed.count(), root.status() == PackageInstaller::Running ? 0 : 1);
                    QCOMPARE(root.isFinished(), !members.contains(QLatin1Char('R')));
                }
            }
        }
    }

    void climbsToTheRoot()
    {
        LogCapture log("tamsel.packages"_s);
        QStringList order;
        QPointer<ManualInstaller> root = new ManualInstaller;
        delete dependencyOf(root); // nobody waits for it any more
        ManualInstaller *middle = dependencyOf(root);
        ManualInstaller *leaf = dependencyOf(middle);
        connect(middle, &PackageInstaller::statusChanged, this, [&] { order.append("middle"_s); });
        connect(leaf, &PackageInstaller::statusChanged, this, [&] { order.append("leaf"_s); });
        connect(root, &PackageInstaller::statusChanged, this, [&] {
            order.append("root "_s + nameOf(root->status()));
            delete root;
        });
        root->succeed();
        middle->succeed();
        QVERIFY(!root->isFinished() && order.isEmpty() && root->errors().isEmpty());
        leaf->fail(7, "no room"_s);
        QCOMPARE(order, QStringList({"leaf"_s, "middle"_s, "root Failed"_s}));
        QVERIFY(!root);

        ManualInstaller late;
        late.fail(7, "no room"_s);
        late.fail(8, "too late"_s);
        QCOMPARE(log.lines().count("critical: Package install error 7 \"no room\""_s), 2);
        QCOMPARE(log.lines().size(), 2);
    }

    void longChainsNeedNoStack()
    {
        bool finishedEarly = true;
        bool finished = false;
        const std::unique_ptr<QThread> thread(QThread::create([&] {
            ManualInstaller root;
            ManualInstaller *leaf = &root;
            for (int i = 0; i < 30000; ++i)
                leaf = dependencyOf(leaf);
            for (auto *job = static_cast<PackageInstaller *>(&root); job != leaf;
                 job = job->dependencies().first())
                static_cast<ManualInstaller *>(job)->succeed();
            finishedEarly = root.isFinished();
            leaf->succeed();
            finished = root.isFinished();
        }));
        thread->setStackSize(256 * 1024);
        thread->start();
        QVERIFY(thread->wait() && !finishedEarly && finished);
    }

    void localInstallsPlainFiles()
    {
        QTemporaryDir package;
        for (const QString &name :
             {"manifest.json"_s, "Manifest.json"_s, "a"_s, "b"_s, "c"_s, ".hidden"_s, "sub/file"_s}) {
            QFile file(package.filePath(name));
            QVERIFY(QDir().mkpath(QFileInfo(file).path()) && file.open(QIODevice::WriteOnly));
        }
        const InstallLocation location = InstallLocation::createRoot().subLocation("birds/owl"_s);
        LocalPackageInstaller installer(QDir(package.path()), location);
        QTRY_COMPARE(installer.status(), PackageInstaller::Succeeded);
        const QStringList expected{"a"_s, "b"_s, "c"_s, "Manifest.json"_s};
        QCOMPARE(installer.location().directory(false).entryList(everyEntry), expected);
        for (const QString &name : expected)
            QCOMPARE(QFile::symLinkTarget(location.pathToFile(name)), package.filePath(name));

        const InstallLocation narrow = InstallLocation::createRoot().subLocation("owl"_s);
        for (const QString &name : {"a"_s, "c"_s}) // links that lead nowhere leave no place for a file
            QVERIFY(QFile::link("/missing"_s, narrow.directory(true).absoluteFilePath(name)));
        LocalPackageInstaller failing(QDir(package.path()), narrow);
        QTRY_COMPARE(failing.status(), PackageInstaller::Failed);
        QSet<QString> errors;
        for (const InstallError &error : failing.errors())
            errors.insert("%1 %2"_s.arg(error.code).arg(error.message));
        const QString error = "1 Failed to install file %1"_s;
        QCOMPARE(errors,
                 QSet<QString>({error.arg(package.filePath("a"_s)), error.arg(package.filePath("c"_s))}));
        QVERIFY(narrow.contains("b"_s));

        const InstallLocation empty = InstallLocation::createRoot().subLocation("owl"_s);
        LocalPackageInstaller none(QDir(package.filePath("gone"_s)), empty);
        QTRY_COMPARE(none.status(), PackageInstaller::Succeeded);
        QVERIFY(!empty.directory(false).exists());
    }
};

QTEST_GUILESS_MAIN(tst_PackageInstaller)
#include "tst_packageinstaller.moc"
