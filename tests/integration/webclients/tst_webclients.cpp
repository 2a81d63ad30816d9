// The loopback server and the clients that applications let loose on it: a browser and a fetch library.

#include "integration/childprocess.h"
#include "storage/fileproxyserver.h"
#include "storage/ifileproxy.h"
#include "support/files.h"
#include "support/literals.h"

#include <QtTest>

using namespace ts::pm;
using namespace ts::pm::test;

namespace {

constexpr int patience = 50000;    // milliseconds; a browser is slow to start
constexpr int largeFile = 8 << 20; // bytes; more than sockets hold back
constexpr int fewConnections = 40; // for some 270 requests, of which 11 are aborted with their connections

/** Provides the files of a directory, at once or after another request. */
class Site : public IFileProxy
{
public:
    void requestFile(const QUrl &url) override
    {
        const QString name = url.toString();
        if (name.startsWith("report/"_s))
            report = name.mid(7);
        if (name == "never"_s || (name == "later"_s && ++waiting < 3))
            return;
        const QString path = directory.filePath(name == "later"_s ? "small/3"_s : name);
        server.resolveFile(key, url, name == "away"_s ? 502 : 200, path);
    }

    bool hasFile(const QString &name, const QByteArray &content) const
    {
        return writeFile(directory.filePath(name), content);
    }

    FileProxyServer server;
    const QString key = server.install(this);
    QTemporaryDir directory;
    int waiting = 0; // for "later"
    QString report;  // what the client says in the end
};

} // namespace

class tst_WebClients : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void visit_data()
    {
        QTest::addColumn<QStringList>("command"); // gets a URL
        QTest::addColumn<QString>("report");
#ifdef CHROMIUM
        QTest::newRow("browser") << QStringList{QStringLiteral(CHROMIUM), "--headless"_s, "--no-sandbox"_s,
                                                "--disable-dev-shm-usage"_s, "--no-proxy-server"_s}
                                 << "well-320-x-200"_s;
#endif
#ifdef NODE
        QTest::newRow("pipelining") << QStringList{QStringLiteral(NODE), QStringLiteral(FETCHER)} << "well"_s;
#endif
    }

    void visit()
    {
        QFETCH(QStringList, command);
        QFETCH(QString, report);
        Site site;
        for (const QString &name : {"page.html"_s, "visit.js"_s})
            QVERIFY(site.hasFile(name, readFile(QStringLiteral(PAGES "/") + name)));
        const QByteArray picture = "<svg xmlns='http://www.w3.org/2000/svg' width='320' height='200'>";
        QVERIFY(site.hasFile("picture.svg"_s, picture.leftJustified(largeFile - 6, ' ') + "</svg>"));
        QVERIFY(QDir(site.directory.path()).mkdir("small"_s));
        for (int i = 0; i < 200; ++i)
            QVERIFY(site.hasFile("small/%1"_s.arg(i), "content of " + QByteArray::number(i) + '\n'));
        const QSignalSpy connections(&site.server, &QTcpServer::newConnection);

        ChildProcess client;
        client.setProcessChannelMode(QProcess::SeparateChannels); // browsers are talkative
        client.start(command.takeFirst(),
                     command << site.server.fileUrl(site.key, QUrl("page.html"_s)).toString());
        QTRY_VERIFY_WITH_TIMEOUT(!site.report.isEmpty() || client.state() == QProcess::NotRunning, patience);
        QCOMPARE(site.report, report);
        QVERIFY(connections.size() < fewConnections);
    }
};

QTEST_GUILESS_MAIN(tst_WebClients)

#include "tst_webclients.moc"
