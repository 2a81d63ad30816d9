#include "storage/downloadinstaller.h"
#include "storage/filestore.h"
#include "storage/filestoretarget.h"

#include "support/httpserver.h"
#include "support/literals.h"
#include "support/table.h"

#include <Tamsel/GetRequest>
#include <Tamsel/Locations>

#include <QNetworkAccessManager>
#include <QNetworkRequest>
#include <QtTest>

using namespace ts::pm;
using namespace ts::pm::test;

namespace {

constexpr int firstCode = 2;

QByteArray contentOf(QChar file)
{
    return file == QLatin1Char('d') ? QByteArray("content of g")
                                    : "content of " + QByteArray(1, file.toLatin1());
}

QString idOf(QChar file)
{
    const QByteArray digest = QCryptographicHash::hash(contentOf(file), QCryptographicHash::Md5);
    return file == QLatin1Char('i') ? "../victim"_s : QString::fromLatin1(digest.toHex());
}

/** The package of the files named, each by a letter that tells what comes of it. */
class Package : public DownloadInstaller
{
public:
    Package(const QString &files, const ScriptedServer &server, QNetworkAccessManager *manager,
            const QSharedPointer<FileStore> &store, const InstallLocation &location)
        : DownloadInstaller(store, QCryptographicHash::Md5, firstCode, location)
    {
        for (int i = 0; i < files.size(); ++i) {
            const QString path = files.mid(i, 1);
            const QUrl url = server.url("/a%2Fb/"_s + path);
            if (addFile(path, idOf(files.at(i))))
                download(i, url, idOf(files.at(i)), new ts::GetRequest(QNetworkRequest(url), manager, this));
        }
        start();
    }
};

} // namespace

class tst_DownloadInstaller : public QObject
{
    Q_OBJECT

    QTemporaryDir scratch;
    QNetworkAccessManager manager;
    QSharedPointer<FileStore> store;

    // "2m" is the error with code 2 of the file m.
    QString errorText(const QString &error, const ScriptedServer &server) const
    {
        const QString file = error.mid(1);
        const QString url = server.url("/a%2Fb/"_s + file).toString();
        if (error == "2m"_s)
            return "2 Download of %1 failed with code 404, error 203"_s.arg(url);
        if (error == "3c"_s)
            return "3 Commit of file "_s + idOf(file.at(0)) + " ("_s + url + ") failed (code 2)"_s;
        return "4 Failed to install file "_s + file + " ("_s + idOf(file.at(0)) + ")"_s;
    }

    void storeFile(QChar file)
    {
        const std::unique_ptr<FileStoreTarget> target(store->getTarget(idOf(file), QCryptographicHash::Md5));
        target->write(contentOf(file));
        QCOMPARE(target->commit(), 0);
    }

private Q_SLOTS:
    void initTestCase() { QVERIFY(ts::Locations::setDataLocation(QDir(scratch.filePath("data"_s)))); }

    void init()
    {
        store = FileStore::defaultStore();
        for (const char file : QByteArray("sghdc"))
            QFile::remove(store->pathForId(idOf(QLatin1Char(file))));
    }

    // g, h good; d the same content as g; s in the store already; m missing on the server; c corrupt; i has
    // an id that is none.
    void downloadsCommitsInstalls()
    {
        for (const Row &row : rows(R"(
            -     |          | 0 | Succeeded
            s     |          | 0 | Succeeded
            g     |          | 1 | Succeeded
            ghs   |          | 2 | Succeeded
            gd    |          | 2 | Succeeded
            gmh   | 2m       | 3 | Failed
            cg    | 3c       | 2 | Failed
            i     | 4i       | 0 | Failed
            mgics | 2m 3c 4i | 3 | Failed)")) {
            init();
            storeFile(QLatin1Char('s'));
            ScriptedServer server;
            for (const char file : QByteArray("ghd"))
                server.setAnswer(QByteArray("/a%2Fb/") + file,
                                 HttpAnswer::with(200, contentOf(QLatin1Char(file))));
            server.setAnswer("/a%2Fb/c", HttpAnswer::with(200, "another content"));
            const InstallLocation location = InstallLocation::createRoot().subLocation("owl"_s);
            const QString files = QString(row[0]).remove(QLatin1Char('-'));
            Package package(files, server, &manager, store, location);
            QVERIFY(!package.isFinished());
            QTRY_VERIFY(package.isFinished());

            QStringList errors;
            for (const InstallError &error : package.errors())
                errors.append("%1 %2"_s.arg(QString::number(error.code), error.message));
            errors.sort();
            QStringList expected;
            for (const QString &error : row[1].split(QLatin1Char(' '), Qt::SkipEmptyParts))
                expected.append(errorText(error, server));
            QCOMPARE(errors, expected);
            QCOMPARE(QString::number(server.requests().size()), row[2]);
            QCOMPARE(QVariant::fromValue(package.status()).toString(), row[3]);
            for (const QChar file : files) {
                const QString link = location.directory(false).absoluteFilePath(QString(file));
                QCOMPARE(QFile::symLinkTarget(link), store->pathForId(idOf(file))); // empty for i
                QCOMPARE(location.contains(QString(file)), !"mci"_s.contains(file));
            }
            QTRY_VERIFY(package.findChildren<FileStoreTarget *>().isEmpty());
        }
    }

    // Nothing is stored before the last download has ended, and a job that goes away takes its downloads
    // along.
    void goesAwayInTheMiddle()
    {
        ScriptedServer server;
        server.setAnswer("/a%2Fb/g", HttpAnswer::with(200, contentOf(QLatin1Char('g'))));
        server.setAnswer("/a%2Fb/h",
                         {"HTTP/1.1 200 OK\r\nContent-Length: 9\r\n\r\nowl", HttpAnswer::Stall, {}});
        auto package =
            std::make_unique<Package>("gh"_s, server, &manager, store, InstallLocation::createRoot());
        QTRY_COMPARE(server.requests().size(), 2);
        QTRY_COMPARE(package->findChildren<ts::Request *>().size(), 1);
        QCOMPARE(package->findChildren<FileStoreTarget *>().size(), 2);
        QVERIFY(!store->contains(idOf(QLatin1Char('g'))));
        package.reset();
        QTRY_COMPARE(server.connections(), 0);
        QVERIFY(!store->contains(idOf(QLatin1Char('g'))));
    }
};

QTEST_GUILESS_MAIN(tst_DownloadInstaller)
#include "tst_downloadinstaller.moc"
