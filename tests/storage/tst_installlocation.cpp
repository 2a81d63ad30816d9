#include "storage/installlocation.h"
#include "storage/installlocation_p.h"
#include "storage/installlocationroot_p.h"

#include "support/diskfaults.h"
#include "support/files.h"
#include "support/literals.h"
#include "support/logcapture.h"
#include "support/table.h"

#include <Tamsel/Locations>

#include <QtTest>

#include <atomic>
#include <fcntl.h>
#include <sys/syscall.h>
#include <sys/time.h>

using namespace ts::pm;
using namespace ts::pm::test;

namespace {

bool linksFail = false;
std::atomic<int> secondsPassed(0);

constexpr auto everyEntry = QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot;

QTemporaryDir &scratch()
{
    static QTemporaryDir directory;
    return directory;
}

QString write(const QString &name)
{
    const QString path = scratch().filePath(name);
    if (!writeFile(path, "content"))
        qFatal("Cannot write %s", qPrintable(name));
    return path;
}

// As old as if the process that holds it had run for days.
bool makeLockOld(const QString &root)
{
    QFile lock(root + "/.lock"_s);
    return lock.open(QIODevice::ReadWrite)
           && lock.setFileTime(QDateTime::currentDateTime().addDays(-2), QFile::FileModificationTime);
}

QStringList everything()
{
    QStringList paths;
    QDirIterator entries(scratch().path(), everyEntry, QDirIterator::Subdirectories);
    while (entries.hasNext())
        paths.append(entries.next());
    paths.sort();
    return paths;
}

QString pathOf(const InstallLocation &location)
{
    return QDir::cleanPath(location.directory(false).absolutePath());
}

} // namespace

// The clock that dates are told by.
extern "C" Q_DECL_EXPORT int gettimeofday(timeval *time, void *zone) noexcept
{
    const long result = syscall(SYS_gettimeofday, time, zone);
    time->tv_sec += secondsPassed;
    return int(result);
}

// The ways to make links, so that a test can take them away.
extern "C" Q_DECL_EXPORT int symlinkat(const char *target, int directory, const char *path) noexcept
{
    if (!linksFail)
        return int(syscall(SYS_symlinkat, target, directory, path));
    errno = EPERM;
    return -1;
}

extern "C" Q_DECL_EXPORT int symlink(const char *target, const char *path) noexcept
{
    return symlinkat(target, AT_FDCWD, path);
}

class tst_InstallLocation : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        linksFail = false;
        QThreadPool::globalInstance()->waitForDone();
        QVERIFY(_installDir().removeRecursively() && _installDir().mkpath("."_s));
    }

    void installsLinks()
    {
        const InstallLocation root = InstallLocation::createRoot();
        const InstallLocation owl = root.subLocation("birds"_s).subLocation("owl"_s);
        const QString picture = write("picture"_s);
        QCOMPARE(pathOf(owl), pathOf(root) + "/birds/owl"_s);
        QCOMPARE(QFileInfo(pathOf(root)).fileName().size(), 11);
        QVERIFY(!root.contains("birds"_s)); // not before something is in it
        QVERIFY(owl.installFile(picture, "picture"_s));
        QVERIFY(owl.installFile(write("other"_s), "picture"_s)); // which leaves the first one there
        QVERIFY(owl.contains("picture"_s) && !owl.contains(QString()));
        QCOMPARE(QFile::symLinkTarget(owl.pathToFile("picture"_s)), picture);

        QVERIFY(owl.installFile("/missing"_s, "dangling"_s));
        QCOMPARE(QFile::symLinkTarget(pathOf(owl) + "/dangling"_s), "/missing"_s);
        QVERIFY(!owl.contains("dangling"_s) && owl.pathToFile("dangling"_s).isEmpty());
        QVERIFY(!owl.installFile(picture, "sub/picture"_s));
        QVERIFY(!owl.contains("sub"_s) && owl.directory(false).mkdir("sub"_s));
        QVERIFY(owl.installFile(picture, "sub/picture"_s));

        linksFail = true; // then it is a copy
        QVERIFY(owl.installFile(picture, "copy"_s) && !owl.installFile("/missing"_s, "other"_s));
        const QFileInfo copy(owl.pathToFile("copy"_s));
        QVERIFY(copy.size() == 7 && !copy.isSymLink());

        const QStringList before = everything();
        const InstallLocation null;
        QVERIFY(!null.isValid() && !null.subLocation("birds"_s).isValid() && !null.contains(picture));
        QCOMPARE(null.directory(true).path(), QDir(QString()).path());
        QVERIFY(!null.installFile(picture, "file"_s) && null.pathToFile(picture).isEmpty());
        QCOMPARE(everything(), before);
    }

    // A file "victim" waits wherever a location or a name could lead by mistake; "^" stands for NUL.
    void staysInsideItsRoot()
    {
        write("victim"_s);
        QDir::setSearchPaths("search"_s, {scratch().path()});
        for (const Row &row : rows(R"(
            birds..a/....  | ..v1..2.tar.       | inside
            /birds         | owl                | inside
            Vögel          | Schleiereule ☾     | inside
            birds          | search:victim      | inside
            birds          | ../victim          | refused
            birds          | /dev/null          | refused
            birds          | C:victim           | refused
            birds          | victim^x           | refused
            birds/../..    | victim             | refused
            ../owls        | victim             | refused
            birds^         | victim             | refused)")) {
            init();
            const InstallLocation root = InstallLocation::createRoot();
            QVERIFY(root.directory(false).mkpath("birds/a"_s) && root.directory(false).mkpath("../birds"_s));
            for (const QString &place : {"victim"_s, "../victim"_s, "../birds/victim"_s, "birds/C:victim"_s})
                QVERIFY(QFile::copy(scratch().filePath("victim"_s), pathOf(root) + QLatin1Char('/') + place));
            const QStringList before = everything();
            const InstallLocation location = root.subLocation(row[0].replace(QLatin1Char('^'), QChar::Null));
            const QString name = row[1].replace(QLatin1Char('^'), QChar::Null);
            const bool inside = location.installFile("/dev/null"_s, name);
            QCOMPARE(row.with(inside ? "inside"_s : "refused"_s), row.text());
            QCOMPARE(location.contains(name), inside);
            QCOMPARE(location.pathToFile(name).startsWith(pathOf(root)), inside);
            location.directory(true);
            QVERIFY(inside || everything() == before);
        }
    }

    void keepsADirectoryOpen()
    {
        const QString picture = write("picture"_s);
        const InstallLocation owl = InstallLocation::createRoot().subLocation("birds/owl"_s);
        const auto nextDescriptor = [] {
            const int next = open("/", O_RDONLY);
            return close(next), next;
        };
        QThreadPool::globalInstance()->waitForDone(); // the clean-up opens directories, too
        const int descriptor = nextDescriptor();
        QVERIFY(InstallDirectory(owl).installFile(picture, "zeroth"_s));
        QCOMPARE(nextDescriptor(), descriptor);
        InstallDirectory directory(owl);
        QVERIFY(directory.installFile(picture, "first"_s) && directory.installFile(picture, "second"_s));
        const QStringList before = everything();
        for (const QString &name : {"../victim"_s, scratch().filePath("victim"_s), "C:x"_s, "no/such"_s})
            QVERIFY2(!directory.installFile(picture, name), qPrintable(name));
        QVERIFY(directory.installFile("/dev/null"_s, "first"_s)); // which is there
        QCOMPARE(everything(), before);
        QVERIFY(owl.directory(false).removeRecursively());
        QVERIFY(directory.installFile(picture, "third"_s));
        QCOMPARE(QFile::symLinkTarget(owl.pathToFile("third"_s)), picture);
    }

    // Age in milliseconds; a lock file that nobody holds does not count.
    void cleanupRemovesOldRoots()
    {
        const QString target = scratch().filePath("target"_s);
        QVERIFY(QDir().mkpath(target + "/birds"_s));
        for (const Row &row : rows(R"(
            300999 | no lock file   | stays
            301000 | no lock file   | goes
            301000 | free lock file | goes
           -301000 | free lock file | stays)")) {
            init();
            const QString root = _installDir().absoluteFilePath("AAAAAAAAAAA"_s);
            QVERIFY(QDir().mkpath(root + "/birds/owl"_s) && QFile::link(target, root + "/link"_s));
            if (row[1] == "free lock file"_s) {
                write("data/packages/install/AAAAAAAAAAA/.lock"_s);
                QVERIFY(makeLockOld(root));
            }
            QVERIFY(QFile::link(target, _installDir().absoluteFilePath("BBBBBBBBBBB"_s)));
            write("data/packages/install/CCCCCCCCCCC"_s);
            const QFileInfo entry(root);
            const QDateTime birth = entry.birthTime().isValid() ? entry.birthTime() : entry.lastModified();
            LogCapture log("tamsel.package.install"_s);
            ts::pm::cleanup(birth.addMSecs(row[0].toInt()));
            const bool goes = row[2] == "goes"_s;
            QCOMPARE(row.with(QFileInfo::exists(root) ? "stays"_s : "goes"_s), row.text());
            QCOMPARE(log.lines().join(QLatin1Char('\n')),
                     goes ? "debug: Removing stale install location \"%1\""_s.arg(root) : QString());
            QCOMPARE(_installDir().entryList(everyEntry).size(), goes ? 2 : 3); // what is no root stays
            QVERIFY(QFileInfo::exists(target + "/birds"_s));
        }
    }

    void cleanupSparesRootsThatAreHeld()
    {
        auto root = std::make_unique<InstallLocation>(InstallLocation::createRoot());
        auto copy = std::make_unique<InstallLocation>(root->subLocation("birds"_s));
        const QString own = pathOf(*root);
        root.reset(); // any copy holds it
        const QDateTime later = QDateTime::currentDateTime().addDays(2);
        QVERIFY(makeLockOld(own));
        ts::pm::cleanup(later);
        QVERIFY(QFileInfo::exists(own + "/.lock"_s));
        copy.reset();
        ts::pm::cleanup(later);
        QVERIFY(_installDir().isEmpty(everyEntry));
    }

    void newRootsSweepOldOnes()
    {
        const QString old = pathOf(InstallLocation::createRoot());
        secondsPassed = 400;
        const InstallLocation root = InstallLocation::createRoot();
        QTRY_VERIFY(!QFileInfo::exists(old));
        QVERIFY(QFileInfo::exists(pathOf(root)));
        secondsPassed = 0;
    }

    // In the place of the directory there is a file at first, then it cannot be written.
    void survivesWithoutADirectory()
    {
        const QString place = _installDir().path();
        const QString line = "critical: Failed to create package install location"_s;
        for (const bool isFile : {true, false}) {
            init();
            if (isFile)
                QVERIFY(_installDir().removeRecursively() && !write("data/packages/install"_s).isEmpty());
            else if (!setWritable(place, false))
                QSKIP("permissions do not bind here");
            {
                LogCapture log("tamsel.package.install"_s);
                const InstallLocation owl = InstallLocation::createRoot().subLocation("owl"_s);
                QCOMPARE(log.lines(), QStringList{line});
                QVERIFY(owl.isValid() && !owl.installFile("/dev/null"_s, "picture"_s));
                QCOMPARE(log.lines(), QStringList({line, line + " \"%1\""_s.arg(pathOf(owl))}));
                QVERIFY(!owl.contains("picture"_s) && _installDir().entryList(everyEntry).isEmpty());
            }
            QVERIFY(isFile ? QFile::remove(place) : setWritable(place, true));
            QVERIFY(InstallLocation::createRoot().installFile("/dev/null"_s, "picture"_s));
        }
    }
};

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    if (!QDir::setCurrent(scratch().path()) || !ts::Locations::setDataLocation(QDir("data"_s)))
        return 1;
    const Unprivileged unprivileged;
    tst_InstallLocation test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_installlocation.moc"
