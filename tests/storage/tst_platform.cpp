#include "support/literals.h"

#include <Tamsel/Locations>
#include <TamselUtil/FileUtils>
#include <TamselUtil/WorkingDir>

#include <QtTest>

using namespace ts::pm::test;
using namespace ts::util;

class tst_Platform : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void dataLocationIsTheStandardOne()
    {
        const QString standard = QStandardPaths::writableLocation(QStandardPaths::AppDataLocation);
        QCOMPARE(ts::Locations::dataLocation().path(), standard);
        QVERIFY(!ts::Locations::setDataLocation(QDir(standard + "/other"_s)));
        QCOMPARE(ts::Locations::dataLocation().path(), standard);
    }

    void copiesShareAWorkingDirectory()
    {
        auto first = std::make_unique<WorkingDir>();
        auto second = std::make_unique<WorkingDir>(*first);
        const QString path = first->path();
        QVERIFY(first->isValid() && QFileInfo(path).isDir() && WorkingDir().path() != path);
        QCOMPARE(second->filePath("a b"_s), path + "/a b"_s);
        constexpr auto others = QFile::ReadGroup | QFile::WriteGroup | QFile::ExeGroup | QFile::ReadOther
                                | QFile::WriteOther | QFile::ExeOther;
        QVERIFY(!(QFile::permissions(path) & others));
        QVERIFY(QDir(path).mkdir("sub"_s));
        first.reset();
        QVERIFY(QFileInfo::exists(path));
        second.reset();
        QVERIFY(!QFileInfo::exists(path));
    }

    void syncsFiles()
    {
        QTemporaryFile file;
        QVERIFY(file.open() && file.write("owl") == 3 && file.flush());
        QVERIFY(FileUtils::syncFile(file.fileName()));
        QCOMPARE(file.size(), 3);
        QVERIFY(!FileUtils::syncFile(file.fileName() + "/missing"_s));
    }
};

QTEST_GUILESS_MAIN(tst_Platform)
#include "tst_platform.moc"
