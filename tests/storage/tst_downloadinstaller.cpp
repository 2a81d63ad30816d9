#include "storage/downloadinstaller.h"
#include "storage/filestore.h"
#include "storage/filestoretarget.h"

#include "support/httpserver.h"
#include "support/literals.h"

#include <Tamsel/GetRequest>
#include <Tamsel/Locations>

#include <QNetworkAccessManager>
#include <QNetworkRequest>
#include <QtTest>

using namespace ts::pm;
using namespace ts::pm::test;

namespace {

// The file "i" has an id that is none, the others are their own content.
QString idOf(const QString &file)
{
    const QByteArray digest = QCryptographicHash::hash(file.toUtf8(), QCryptographicHash::Md5);
    return file == "i"_s ? "../victim"_s : QString::fromLatin1(digest.toHex());
}

class Package : public DownloadInstaller
{
public:
    Package(const QStringList &files, const ScriptedServer &server, QNetworkAccessManager *manager,
            const InstallLocation &location)
        : DownloadInstaller(FileStore::defaultStore(), QCryptographicHash::Md5, 2, location)
    {
        for (int i = 0; i < files.size(); ++i) {
            const QString file = files.at(i);
            const QUrl url = server.url("/a%2Fb/"_s + file);
            if (addFile(file, idOf(file)))
                download(i, url, idOf(file), new ts::GetRequest(QNetworkRequest(url), manager, this));
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

    // Nothing is stored before the last download has ended.
    void goesAwayInTheMiddle()
    {
        ScriptedServer server;
        server.setAnswer("/a%2Fb/g", HttpAnswer::with(200, "g"));
        server.setAnswer("/a%2Fb/h", {"HTTP/1.1 200 OK\r\nContent-Length: 9\r\n\r\n", HttpAnswer::Stall, {}});
        auto package = std::make_unique<Package>(QStringList{"g"_s, "h"_s}, server, &manager,
                                                 InstallLocation::createRoot());
        QTRY_COMPARE(package->findChildren<ts::Request *>().size(), 1);
        package.reset();
        QCoreApplication::processEvents();
        QVERIFY(!store->contains(idOf("g"_s)));
    }

    void reportsWhatIsMissing()
    {
        ScriptedServer server;
        server.setAnswer("/a%2Fb/g", HttpAnswer::with(200, "g"));
        const InstallLocation location = InstallLocation::createRoot().subLocation("owl"_s);
        Package package({"g"_s, "m"_s, "i"_s}, server, &manager, location);
        QTRY_COMPARE(package.status(), PackageInstaller::Failed);
        QStringList errors;
        for (const InstallError &error : package.errors())
            errors.append("%1 %2"_s.arg(QString::number(error.code), error.message));
        const QString url = server.url("/a%2Fb/m"_s).toString();
        QCOMPARE(errors, QStringList({"4 Failed to install file i (../victim)"_s,
                                      "2 Download of %1 failed with code 404, error 203"_s.arg(url)}));
        QCOMPARE(server.requests().size(), 2);
        QVERIFY(location.contains("g"_s));
        QTRY_VERIFY(package.findChildren<FileStoreTarget *>().isEmpty());
    }
};

QTEST_GUILESS_MAIN(tst_DownloadInstaller)
#include "tst_downloadinstaller.moc"
