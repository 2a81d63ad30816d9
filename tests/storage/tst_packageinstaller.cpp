#include "storage/localpackageinstaller.h"

#include "support/directorycatalogue.h"
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
                    QCOMPARE(changed.count(), row[1] == "Running"_s ? 0 : 1);
                    QCOMPARE(root.isFinished(), row[1] != "Running"_s);
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
        ManualInstaller *leaf = dependencyOf(root);
        for (PackageInstaller *installer :
             std::initializer_list<PackageInstaller *>{leaf, leaf, root, middle, nullptr})
            middle->addDependency(installer); // the leaf moves here, all others change nothing
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

        root = new ManualInstaller;
        const QVector<QPointer<ManualInstaller>> siblings{dependencyOf(root), dependencyOf(root)};
        for (ManualInstaller *installer : siblings)
            connect(installer, &QObject::destroyed, this, [&] { delete siblings[0], delete siblings[1]; });
        delete root;
        QVERIFY(!siblings[0] && !siblings[1]);

        ManualInstaller late;
        late.fail(7, "no room"_s);
        late.fail(8, "too late"_s);
        QCOMPARE(log.lines().count("critical: Package install error 7 \"no room\""_s), 2);
        QCOMPARE(log.lines().size(), 2);
    }

    void longChainsNeedNoStack()
    {
        QVector<bool> finished;
        const std::unique_ptr<QThread> thread(QThread::create([&finished] {
            ManualInstaller root;
            QVector<ManualInstaller *> chain{&root};
            while (chain.size() < 30000)
                chain.append(dependencyOf(chain.constLast()));
            ManualInstaller *leaf = chain.takeLast();
            for (ManualInstaller *job : qAsConst(chain))
                job->succeed();
            finished.append(root.isFinished());
            leaf->succeed();
            finished.append(root.isFinished());
        }));
        thread->setStackSize(256 * 1024);
        thread->start();
        QVERIFY(thread->wait());
        QCOMPARE(finished, QVector<bool>({false, true}));
    }

    void localInstallsPlainFiles()
    {
        DirectoryCatalogue package;
        for (const char *name : {"manifest.json", "Manifest.json", "a", "b", "c", ".hidden", "sub/file"})
            package.writeFile(QString::fromLatin1(name), {});
        const auto install = [](const QString &path, const InstallLocation &location) {
            LocalPackageInstaller installer((QDir(path)), location);
            if (!QTest::qWaitFor([&] { return installer.isFinished(); }))
                return QStringList("hangs"_s);
            QStringList result;
            for (const InstallError &error : installer.errors())
                result.append("%1 %2"_s.arg(error.code).arg(error.message));
            result.sort();
            return QStringList(nameOf(installer.status())) + result;
        };
        const InstallLocation location = InstallLocation::createRoot().subLocation("birds/owl"_s);
        QCOMPARE(install(package.path(), location), QStringList("Succeeded"_s));
        const QStringList names = location.directory(false).entryList(everyEntry);
        QCOMPARE(names.join(QLatin1Char(' ')), "a b c Manifest.json"_s);
        for (const QString &name : names)
            QCOMPARE(QFile::symLinkTarget(location.pathToFile(name)), package.path() + "/"_s + name);

        const InstallLocation narrow = InstallLocation::createRoot().subLocation("owl"_s);
        for (const QString &name : {"a"_s, "c"_s}) // links that lead nowhere leave no place for a file
            QVERIFY(QFile::link("/missing"_s, narrow.directory(true).absoluteFilePath(name)));
        const QString error = "1 Failed to install file "_s + package.path();
        QCOMPARE(install(package.path(), narrow), QStringList({"Failed"_s, error + "/a"_s, error + "/c"_s}));
        QVERIFY(narrow.contains("b"_s));

        const InstallLocation empty = InstallLocation::createRoot().subLocation("owl"_s);
        QCOMPARE(install(package.path() + "/gone"_s, empty), QStringList("Succeeded"_s));
        QVERIFY(!empty.directory(false).exists());
    }
};

QTEST_GUILESS_MAIN(tst_PackageInstaller)
#include "tst_packageinstaller.moc"
