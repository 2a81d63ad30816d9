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

int run = 0; // which has contents of its own

// A file is a letter that tells what comes of it: g, h good; d the same content as g; s in the store already;
// m missing on the server; c corrupt; i has an id that is none.
QByteArray contentOf(QChar file)
{
    return QByteArray::number(run) + (file == QLatin1Char('d') ? 'g' : file.toLatin1());
}

QString idOf(QChar file)
{
    const QByteArray digest = QCryptographicHash::hash(contentOf(file), QCryptographicHash::Md5);
    return file == QLatin1Char('i') ? "../victim"_s : QString::fromLatin1(digest.toHex());
}

class Package : public DownloadInstaller
{
public:
    Package(const QString &files, const ScriptedServer &server, QNetworkAccessManager *manager,
            const InstallLocation &location)
        : DownloadInstaller(FileStore::defaultStore(), QCryptographicHash::Md5, 2, location)
    {
        for (int i = 0; i < files.size(); ++i) {
            const QUrl url = server.url("/a%2Fb/"_s + files.at(i));
            if (addFile(files.mid(i, 1), idOf(files.at(i))))
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

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(ts::Locations::setDataLocation(QDir(scratch.filePath("data"_s))));
        store = FileStore::defaultStore();
    }

    void init() { ++run; }

    // Files, errors, number of requests.
    void downloadsCommitsInstalls()
    {
        for (const Row &row : rows(R"(
                  |  | 0
            s     |  | 0
            ghs   |  | 2
            gd    |  | 2
            gmh   | 2 Download of /a%2Fb/m failed with code 404, error 203 | 3
            cg    | 3 Commit of file ID (/a%2Fb/c) failed (code 2) | 2
            ig    | 4 Failed to install file i (../victim) | 1)")) {
            init();
            ScriptedServer server;
            for (const char file : QByteArray("ghd"))
                server.setAnswer(QByteArray("/a%2Fb/") + file,
                                 HttpAnswer::with(200, contentOf(QLatin1Char(file))));
            server.setAnswer("/a%2Fb/c", HttpAnswer::with(200, "another content"));
            QVERIFY(QFile(store->pathForId(idOf(QLatin1Char('s')))).open(QIODevice::WriteOnly));
            const InstallLocation location = InstallLocation::createRoot().subLocation("owl"_s);
            Package package(row[0], server, &manager, location);
            QVERIFY(!package.isFinished());
            QTRY_VERIFY(package.isFinished());

            QStringList errors;
            for (const InstallError &error : package.errors())
                errors.append("%1 %2"_s.arg(QString::number(error.code), error.message)
                                  .remove(server.url(QString()).toString(QUrl::StripTrailingSlash))
                                  .replace(idOf(QLatin1Char('c')), "ID"_s));
            QCOMPARE(errors.join(QLatin1Char(';')), row[1]);
            QCOMPARE(row.with(QString::number(server.requests().size())), row.text());
            QCOMPARE(package.status() == PackageInstaller::Failed, !errors.isEmpty());
            for (const QChar file : row[0]) {
                const QString link = location.directory(false).absoluteFilePath(QString(file));
                QCOMPARE(QFile::symLinkTarget(link),
                         store->pathForId(idOf(file))); // neither for an invalid id
                QCOMPARE(location.contains(QString(file)), !"mci"_s.contains(file));
            }
            QTRY_VERIFY(package.findChildren<FileStoreTarget *>().isEmpty());
        }
    }

    // Nothing is stored before the last download has ended, nor when the job goes away before.
    void goesAwayInTheMiddle()
    {
        ScriptedServer server;
        server.setAnswer("/a%2Fb/g", HttpAnswer::with(200, contentOf(QLatin1Char('g'))));
        server.setAnswer("/a%2Fb/h", {"HTTP/1.1 200 OK\r\nContent-Length: 9\r\n\r\n", HttpAnswer::Stall, {}});
        auto package = std::make_unique<Package>("gh"_s, server, &manager, InstallLocation::createRoot());
        QTRY_COMPARE(package->findChildren<ts::Request *>().size(), 1);
        QCOMPARE(package->findChildren<FileStoreTarget *>().size(), 2);
        QTRY_COMPARE(server.requests().size(), 2);
        package.reset();
        QCoreApplication::processEvents();
        QVERIFY(!store->contains(idOf(QLatin1Char('g'))));
    }
};

QTEST_GUILESS_MAIN(tst_DownloadInstaller)
#include "tst_downloadinstaller.moc"
