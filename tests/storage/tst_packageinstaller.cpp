#include "storage/localpackageinstaller.h"

#include "support/literals.h"
#include "support/logcapture.h"
#include "support/manualinstaller.h"
#include "support/table.h"

#include <QtTest>

using namespace ts::pm;
using namespace ts::pm::test;

namespace {

ManualInstaller *dependencyOf(PackageInstaller *installer)
{
    auto *dependency = new ManualInstaller(InstallLocation());
    installer->addDependency(dependency);
    return dependency;
}

void bringTo(ManualInstaller *installer, QChar status)
{
    if (status == QLatin1Char('S'))
        installer->succeed();
    else if (status == QLatin1Char('F'))
        installer->fail();
}

QString nameOf(PackageInstaller::Status status)
{
    return QVariant::fromValue(status).toString();
}

void writeFiles(const QTemporaryDir &directory, const QStringList &names)
{
    for (const QString &name : names) {
        QFile file(directory.filePath(name));
        if (!QDir(directory.path()).mkpath(QFileInfo(name).path()) || !file.open(QIODevice::WriteOnly))
            qFatal("Cannot write %s", qPrintable(name));
    }
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
            S SS SSS                                | Succeeded
            F FS SF FF SSF SFS FFS FFF              | Failed
            R RS SR RR RF FR SSR SRS RSS SFR SRF FRR | Running)")) {
            for (const QString &members : row[0].split(QLatin1Char(' '))) {
                for (const bool dependenciesFirst : {true, false}) {
                    ManualInstaller root{InstallLocation()};
                    QSignalSpy changed(&root, &PackageInstaller::statusChanged);
                    QVector<ManualInstaller *> installers{&root};
                    while (installers.size() < members.size())
                        installers.append(dependencyOf(&root));
                    for (int i = 0; i < members.size(); ++i) {
                        const int member = dependenciesFirst ? members.size() - 1 - i : i;
                        QCOMPARE(root.status(), PackageInstaller::Running);
                        bringTo(installers.at(member), members.at(member));
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
        QStringList order;
        ManualInstaller root{InstallLocation()};
        ManualInstaller *middle = dependencyOf(&root);
        ManualInstaller *leaf = dependencyOf(middle);
        QCOMPARE(leaf->parent(), middle);
        QCOMPARE(root.dependencies(), QList<PackageInstaller *>{middle});
        connect(&root, &PackageInstaller::statusChanged, this, [&] { order.append("root"_s); });
        connect(middle, &PackageInstaller::statusChanged, this, [&] { order.append("middle"_s); });
        connect(leaf, &PackageInstaller::statusChanged, this, [&] { order.append("leaf"_s); });
        root.succeed();
        middle->succeed();
        QVERIFY(!root.isFinished() && order.isEmpty());
        leaf->fail();
        QVERIFY(root.isFinished());
        QCOMPARE(root.status(), PackageInstaller::Failed);
        QCOMPARE(order, QStringList({"leaf"_s, "middle"_s, "root"_s}));
        QVERIFY(root.errors().isEmpty());
    }

    void keepsItsStatusUntilADependencyChanges()
    {
        ManualInstaller root{InstallLocation()};
        root.succeed();
        ManualInstaller *first = dependencyOf(&root);
        ManualInstaller *second = dependencyOf(&root);
        QVERIFY(root.status() == PackageInstaller::Succeeded && !root.isFinished());
        first->succeed();
        QCOMPARE(root.status(), PackageInstaller::Running);
        second->succeed();
        QCOMPARE(root.status(), PackageInstaller::Succeeded);
    }

    void survivesDeletion()
    {
        QPointer<ManualInstaller> root = new ManualInstaller(InstallLocation());
        delete dependencyOf(root);
        root->succeed();
        QVERIFY(root->isFinished() && root->status() == PackageInstaller::Succeeded);
        ManualInstaller *leaf = dependencyOf(dependencyOf(root));
        connect(leaf, &PackageInstaller::statusChanged, this, [root] { delete root; });
        leaf->succeed();
        QVERIFY(!root);
    }

    void logsErrorsOnce()
    {
        LogCapture log("tamsel.packages"_s);
        ManualInstaller installer{InstallLocation()};
        QSignalSpy changed(&installer, &PackageInstaller::statusChanged);
        installer.fail(7, "no room"_s);
        installer.fail(8, "too late"_s);
        QCOMPARE(log.lines(), QStringList{"critical: Package install error 7 \"no room\""_s});
        QCOMPARE(changed.count(), 1);
    }

    void longChainsNeedNoStack()
    {
        bool finished = true;
        PackageInstaller::Status status = PackageInstaller::Failed;
        const std::unique_ptr<QThread> thread(QThread::create([&] {
            ManualInstaller root{InstallLocation()};
            ManualInstaller *leaf = &root;
            for (int i = 0; i < 30000; ++i)
                leaf = dependencyOf(leaf);
            for (auto *job = static_cast<PackageInstaller *>(&root); job != leaf;
                 job = job->dependencies().first())
                static_cast<ManualInstaller *>(job)->succeed();
            finished = root.isFinished();
            leaf->succeed();
            status = root.isFinished() ? root.status() : PackageInstaller::Failed;
        }));
        thread->setStackSize(256 * 1024);
        thread->start();
        QVERIFY(thread->wait() && !finished);
        QCOMPARE(status, PackageInstaller::Succeeded);
    }

    void localInstallsPlainFiles()
    {
        QTemporaryDir package;
        writeFiles(package, {"manifest.json"_s, "Manifest.json"_s, "picture"_s, ".hidden"_s, "sub/file"_s});
        const InstallLocation location = InstallLocation::createRoot().subLocation("birds/owl"_s);
        LocalPackageInstaller installer(QDir(package.path()), location);
        QSignalSpy changed(&installer, &PackageInstaller::statusChanged);
        QCOMPARE(installer.status(), PackageInstaller::Running);
        QVERIFY(changed.wait());
        QCOMPARE(installer.status(), PackageInstaller::Succeeded);
        const QStringList expected{"Manifest.json"_s, "picture"_s};
        const QDir installed = installer.location().directory(false);
        QCOMPARE(installed.entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot), expected);
        for (const QString &name : expected)
            QCOMPARE(QFile::symLinkTarget(location.pathToFile(name)), package.filePath(name));
    }

    void localReportsEachFileThatFails()
    {
        QTemporaryDir package;
        writeFiles(package, {"a"_s, "b"_s, "c"_s});
        const InstallLocation location = InstallLocation::createRoot().subLocation("owl"_s);
        for (const QString &name : {"a"_s, "c"_s}) // links that lead nowhere leave no place for a file
            QVERIFY(QFile::link("/missing"_s, location.directory(true).absoluteFilePath(name)));
        LogCapture log("tamsel.packages"_s);
        LocalPackageInstaller installer(QDir(package.path()), location);
        QTRY_COMPARE(installer.status(), PackageInstaller::Failed);
        QStringList errors;
        for (const InstallError &error : installer.errors())
            errors.append("%1 %2"_s.arg(error.code).arg(error.message));
        errors.sort();
        const QString error = "1 Failed to install file %1"_s;
        QCOMPARE(errors,
                 QStringList({error.arg(package.filePath("a"_s)), error.arg(package.filePath("c"_s))}));
        QCOMPARE(log.lines().size(), 2);
        QVERIFY(location.contains("b"_s));
    }

    void localInstallsNothingFromNothing()
    {
        QTemporaryDir package;
        writeFiles(package, {"manifest.json"_s});
        for (const QString &path : {package.path(), package.filePath("gone"_s)}) {
            const InstallLocation location = InstallLocation::createRoot().subLocation("owl"_s);
            LocalPackageInstaller installer(QDir(path), location);
            QTRY_COMPARE(installer.status(), PackageInstaller::Succeeded);
            QVERIFY(!location.directory(false).exists());
        }
    }
};

QTEST_GUILESS_MAIN(tst_PackageInstaller)
#include "tst_packageinstaller.moc"
