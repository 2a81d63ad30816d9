#include "storage/installlocation.h"
#include "storage/installlocationroot_p.h"

#include "support/literals.h"
#include "support/logcapture.h"
#include "support/table.h"

#include <Tamsel/Locations>

#include <QtTest>

#include <sys/syscall.h>
#include <sys/time.h>
#include <unistd.h>

using namespace ts::pm;
using namespace ts::pm::test;

namespace {

bool linksFail = false;
qint64 clockOffset = 0; // seconds

constexpr qint64 longTime = 100000; // seconds
constexpr auto everyEntry = QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot;

QTemporaryDir &scratch()
{
    static QTemporaryDir directory;
    return directory;
}

QString write(const QString &name, const QByteArray &content = "content")
{
    QFile file(scratch().filePath(name));
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        qFatal("Cannot write %s", qPrintable(name));
    return file.fileName();
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

// Qt's ways to make links and to tell the time of day, so that a test can take the one away and move the
// other.
extern "C" Q_DECL_EXPORT int symlink(const char *target, const char *path) noexcept
{
    if (!linksFail)
        return int(syscall(SYS_symlink, target, path));
    errno = EPERM;
    return -1;
}

extern "C" Q_DECL_EXPORT int gettimeofday(timeval *time, void *) noexcept
{
    timespec now{};
    const int result = clock_gettime(CLOCK_REALTIME, &now);
    *time = {now.tv_sec + clockOffset, now.tv_nsec / 1000};
    return result;
}

class tst_InstallLocation : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QVERIFY(ts::Locations::setDataLocation(QDir(scratch().filePath("data"_s)))); }

    void init()
    {
        linksFail = false;
        clockOffset = 0;
        QThreadPool::globalInstance()->waitForDone();
        QVERIFY(QDir(scratch().filePath("data"_s)).removeRecursively());
        QVERIFY(_installDir().mkpath("."_s));
    }

    void installsLinks()
    {
        const InstallLocation root = InstallLocation::createRoot();
        const InstallLocation owl = root.subLocation("birds"_s).subLocation("owl"_s);
        const QString picture = write("picture"_s, "an owl");
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
        QVERIFY(owl.installFile(picture, "copy"_s));
        QVERIFY(!owl.installFile("/missing"_s, "other"_s));
        write("picture"_s, "changed");
        QFile copy(owl.pathToFile("copy"_s));
        QVERIFY(copy.open(QIODevice::ReadOnly));
        QCOMPARE(copy.readAll(), QByteArray("an owl"));

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
        for (const Row &row : rows(R"(
            birds          | owl                | inside
            birds..a/....  | ..v1..2.tar.       | inside
            /birds         | owl                | inside
            Vögel          | Schleiereule ☾     | inside
            birds          | ../victim          | refused
            birds          | /dev/null          | refused
            birds          | C:victim           | refused
            birds          | victim^x           | refused
            birds/../..    | victim             | refused
            birds^         | victim             | refused)")) {
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
            QVERIFY(inside || everything() == before);
            init();
        }
    }

    void cleanupRemovesOldRoots()
    {
        for (const Row &row : rows(R"(
            300999 | no lock file   | stays
            301000 | no lock file   | goes
            300999 | free lock file | stays
            301000 | free lock file | goes
           -301000 | free lock file | stays)")) {
            QVERIFY(_installDir().mkpath("AAAAAAAAAAA/birds/owl"_s));
            const QString root = _installDir().absoluteFilePath("AAAAAAAAAAA"_s);
            if (row[1] == "free lock file"_s)
                write("data/packages/install/AAAAAAAAAAA/.lock"_s);
            const QFileInfo entry(root);
            const QDateTime birth = entry.birthTime().isValid() ? entry.birthTime() : entry.lastModified();
            clockOffset = longTime; // the lock file itself looks forgotten in each case
            LogCapture log("tamsel.package.install"_s);
            ts::pm::cleanup(birth.addMSecs(row[0].toInt()));
            QCOMPARE(row.with(QFileInfo::exists(root) ? "stays"_s : "goes"_s), row.text());
            const QStringList line{"debug: Removing stale install location \"%1\""_s.arg(root)};
            QCOMPARE(log.lines(), row[2] == "goes"_s ? line : QStringList());
        }
    }

    void cleanupTouchesNothingButRoots()
    {
        const QString root = _installDir().absoluteFilePath("AAAAAAAAAAA"_s);
        QVERIFY(QDir().mkpath(root + "/birds/owl"_s));
        const QString target = scratch().filePath("target"_s);
        QVERIFY(QDir().mkpath(target + "/birds"_s));
        QVERIFY(QFile::link(target, _installDir().absoluteFilePath("BBBBBBBBBBB"_s)));
        QVERIFY(QFile::link(target, root + "/link"_s));
        write("data/packages/install/CCCCCCCCCCC"_s);
        ts::pm::cleanup(QDateTime::currentDateTime().addSecs(longTime));
        QCOMPARE(_installDir().entryList(everyEntry), QStringList({"BBBBBBBBBBB"_s, "CCCCCCCCCCC"_s}));
        QVERIFY(QFileInfo::exists(target + "/birds"_s));
    }

    void cleanupSparesRootsThatAreHeld()
    {
        auto root = std::make_unique<InstallLocation>(InstallLocation::createRoot());
        auto copy = std::make_unique<InstallLocation>(root->subLocation("birds"_s));
        const QString own = pathOf(*root);
        root.reset(); // any copy holds it
        QProcess holder;
        holder.start(QStringLiteral(ROOT_HOLDER), {scratch().filePath("data"_s)});
        QVERIFY(holder.waitForReadyRead());
        const QString foreign = QString::fromLocal8Bit(holder.readLine()).trimmed();
        clockOffset = longTime; // far beyond any age at which a lock counts as forgotten
        ts::pm::cleanup(QDateTime::currentDateTime());
        QVERIFY(QFileInfo::exists(own + "/.lock"_s) && QFileInfo::exists(foreign + "/.lock"_s));
        copy.reset();
        holder.kill();
        QVERIFY(holder.waitForFinished());
        const InstallLocation next = InstallLocation::createRoot(); // starts a cleanup
        QThreadPool::globalInstance()->waitForDone();
        QCOMPARE(_installDir().entryList(everyEntry), QStringList{QFileInfo(pathOf(next)).fileName()});
    }

    void survivesWithoutADirectory()
    {
        QVERIFY(QDir(scratch().filePath("data"_s)).removeRecursively());
        write("data"_s);
        LogCapture log("tamsel.package.install"_s);
        const QString line = "critical: Failed to create package install location"_s;
        const InstallLocation owl = InstallLocation::createRoot().subLocation("owl"_s);
        QCOMPARE(log.lines(), QStringList{line});
        QVERIFY(owl.isValid() && !owl.installFile("/dev/null"_s, "picture"_s) && !owl.contains("picture"_s));
        QCOMPARE(log.lines(), QStringList({line, line + " \"%1\""_s.arg(pathOf(owl))}));
        QVERIFY(QFile::remove(scratch().filePath("data"_s)));
    }
};

QTEST_GUILESS_MAIN(tst_InstallLocation)
#include "tst_installlocation.moc"
