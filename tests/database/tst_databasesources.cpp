// What the CouchDB source and the document source have in common: when they poll, what becomes of each
// answer, and what survives a restart.

#include "database/couchdbpackagesource.h"
#include "database/documentpackagesource.h"
#include "repository/packageaccessor.h"
#include "support/diskfaults.h"
#include "support/fakeclock.h"
#include "support/files.h"
#include "support/httpserver.h"
#include "support/literals.h"
#include "support/logcapture.h"

#include <Tamsel/Locations>
#include <Tamsel/Request>
#include <TamselDataCore/Context>
#include <TamselUtil/FileUtils>

#include <QNetworkAccessManager>
#include <QtConcurrentRun>
#include <QtTest>

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

using namespace ts::pm;
using namespace ts::pm::test;

namespace {

/** The rows of packages whose ids are single letters, for either source. */
QByteArray view(const QByteArray &ids)
{
    QByteArrayList rows;
    for (const char id : ids)
        rows << QByteArray(R"({"key":["package"],"value":{"_id":"package-%"},"doc":{"_id":"%"}})")
                    .replace('%', QByteArray(1, id));
    return R"({"rows":[)" + rows.join(',') + "]}";
}

bool hasDocuments; // in this pass over the tests, of which there is one for each kind

/** The ticks of a source. Those that it does not hear cannot have it poll in the middle of a slow test. */
struct Ticks : QObject
{
    bool eventFilter(QObject *, QEvent *event) override
    {
        const bool isTick = event->type() == QEvent::Timer;
        count += isTick;
        return isTick && !heard;
    }

    bool heard = false;
    int count = 0;
};

/** A database on the loopback and one of the two sources on it. */
struct Stage
{
    Stage()
    {
        const QString hash = idOf(server.url("/db"_s).toString().toLatin1(), QCryptographicHash::Md5);
        directory.setPath(ts::Locations::dataLocation().filePath(
            (hasDocuments ? "packages/my.a+b%41&c\"/"_s : "packages/couchdb/"_s) + hash));
        start();
    }

    void start(const QString &userInfo = {})
    {
        QUrl url = server.url(QString());
        url.setUserInfo(userInfo);
        source.reset();
        context = std::make_unique<ts::data::Context>(url, "db"_s);
        if (hasDocuments)
            source = std::make_unique<DocumentPackageSource>("my:a+b%41&c\""_s, context.get());
        else
            source = std::make_unique<CouchDBPackageSource>(QUrl(url.toString() + "/db"_s), &manager);
        source->installEventFilter(&ticks);
    }

    void answer(const HttpAnswer &answer)
    {
        server.setHandler([answer](const HttpRequest &) { return answer; });
    }

    /** Lets the source ask, and returns the number of updates that it wants for it; negative if it hangs. */
    int poll() const
    {
        const QSignalSpy updates(source.get(), &PackageSource::updateRequired);
        source->update();
        return QTest::qWaitFor([this] { return isIdle(); }, 60000) ? updates.count() : -1;
    }
    int pollFor(const QByteArray &packages)
    {
        answer(HttpAnswer::with(200, view(packages)));
        return poll();
    }
    QStringList files() const { return directory.entryList(QDir::Files | QDir::Hidden); }
    bool isIdle() const
    {
        return source->findChildren<ts::Request *>().isEmpty()
               && source->findChildren<QFutureWatcherBase *>().isEmpty();
    }

    static QString ids(PackageAccessor *accessor)
    {
        accessor->initialize();
        QString ids;
        for (int i = 0; i < accessor->packageCount(); ++i)
            ids += accessor->packageInfo(i).id;
        return ids;
    }
    QString ids() const { return ids(std::unique_ptr<PackageAccessor>(source->getAccessor()).get()); }

    /** What has been logged since the last call, without quotes, hashes and the URL of the server. */
    QString news()
    {
        QString news;
        for (; lines < log.lines().size(); ++lines)
            news += " | "_s + log.lines().at(lines);
        news.remove(server.url(QString()).toString()).remove(QLatin1Char('"'));
        return news.replace(QRegularExpression("[0-9a-f]{32}"_s), "HASH"_s);
    }

    /** Puts a file into the directory of persisted listings, as old as if written in so many seconds. */
    void write(const QString &name, const QByteArray &content, int age) const
    {
        QFile file(directory.filePath(name));
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(content) == content.size() && file.flush()
                && file.setFileTime(QDateTime::currentDateTime().addSecs(age), QFile::FileModificationTime));
    }

    const LogCapture log{hasDocuments ? "tamsel.package.document"_s : "tamsel.package.couchdb"_s};
    int lines = 0;
    ScriptedServer server;
    QNetworkAccessManager manager;
    std::unique_ptr<ts::data::Context> context;
    QDir directory;
    Ticks ticks;
    std::unique_ptr<PackageSource> source;
};

} // namespace

class tst_DatabaseSources : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase_data()
    {
        QTest::addColumn<bool>("documents");
        QTest::newRow("couchdb") << false;
        QTest::newRow("documents") << true;
    }
    void init()
    {
        QFETCH_GLOBAL(bool, documents);
        hasDocuments = documents;
    }

    void polls()
    {
        Stage stage;
        Ticks &ticks = stage.ticks;
        ticks.heard = true;
        QCOMPARE(stage.source->priority(), hasDocuments ? -1 : 2);
        stage.source->setParent(nullptr); // the database is the one that the context named in the beginning
        for (const int expected : hasDocuments ? QVector<int>{1, 152, 303} : QVector<int>{1, 62, 123}) {
            QVERIFY(stage.isIdle());
            while (stage.isIdle() && ticks.count < 400) {
                QTimerEvent tick(-1); // counts like those of the source's own timer
                if (ticks.count % 2 == 1)
                    QCoreApplication::sendEvent(stage.source.get(), &tick);
                else
                    FakeClock::advance(std::chrono::seconds(1));
            }
            QCOMPARE(ticks.count, expected);
            QTRY_VERIFY(stage.isIdle());
        }
        QCOMPARE(stage.server.requests().size(), 3);
        const HttpRequest request = stage.server.requests().constFirst();
        QCOMPARE(request.headers.value("connection"), QByteArray("close"));
        QCOMPARE(request.path,
                 hasDocuments
                     ? "/db/_design/melvoro/_view/by_type?start_key=[%22my:a%2Bb%2541%26c%5C%22%22,0]"
                       "&end_key=[%22my:a%2Bb%2541%26c%5C%22%22,[]]&include_docs=true"
                     : "/db/_design/tamsel/_view/packages");
    }

    void takesAnswers()
    {
        Stage stage;
        const QString gained =
            hasDocuments ? " | info: Updating document packages for type my:a+b%41&c\\ new hash HASH"_s
                         : " | info: Finished update - new package list hash HASH"_s;
        const QString same =
            hasDocuments
                ? " | debug: Document package update finished, no update required for type my:a+b%41&c\\"_s
                : QString();
        const auto failure = [](int networkError, int status) {
            return hasDocuments
                       ? "0ab | critical: Document package update failed with code  1 :  "
                         "Fetch of document data failed %1: "_s.arg(networkError)
                       : "0ab | critical: Failed to load package listing QUrl(/db) with code %1"_s.arg(
                           status);
        };
        const QString garbled = hasDocuments
                                    ? "0 | critical: Document package update failed with code  2 :  "_s
                                    : "1"_s + gained + " | critical: Failed to parse data file "_s;
        // More than 4 MiB are cut, but of documents only the rows count.
        const auto padded = [](int size) {
            const QByteArray rows = view("c").chopped(1) + ",\"x\":\"";
            return rows + QByteArray(size - rows.size() - 2, 'x') + "\"}";
        };
        // Its indentation takes 80 MB.
        const QByteArray layers = R"({"rows":)" + QByteArray(1000, '[') + QByteArray("0,").repeated(20000)
                                  + '0' + QByteArray(1000, ']') + '}';
        const struct
        {
            int status;
            QByteArray body;
            QString outcome; // number of updates wanted, what is there afterwards, what is logged
            int missing = 0; // bytes
        } answers[] = {
            {200, view("ab"), "1ab"_s + gained},
            {200, view("ab"), "0ab"_s + same},
            {500, view("x"), failure(QNetworkReply::InternalServerError, 500)},
            {401, view("x"), failure(QNetworkReply::AuthenticationRequiredError, 401)},
            {204, {}, failure(QNetworkReply::NoError, 204)},
            {200, view("x"), failure(QNetworkReply::RemoteHostClosedError, 200), 3},
            {200, QByteArray(16777217, ' '), failure(QNetworkReply::UnknownContentError, 200)},
            {404, view("x"), hasDocuments ? failure(QNetworkReply::ContentNotFoundError, 404) : "0ab"_s},
            {200, "{}", "1"_s + gained},
            {200, "{", garbled + "unterminated object"_s},
            {200, layers, hasDocuments ? garbled + "too large document"_s : "1"_s + gained},
            {200, padded(4194304), "1c"_s + gained},
            {200, padded(4194305), hasDocuments ? "0c"_s + same : garbled + "unterminated string"_s},
        };
        for (const auto &answer : answers) {
            HttpAnswer sent = HttpAnswer::with(answer.status, answer.body);
            sent.bytes.chop(answer.missing);
            stage.answer(sent);
            QString outcome = QString::number(stage.poll());
            outcome += stage.ids();
            outcome += stage.news();
            if (answer.outcome.endsWith(": "_s)) // behind it is what the network says
                outcome.truncate(answer.outcome.size());
            QCOMPARE(outcome, answer.outcome);
        }
    }

    void keepsTheListingForItsReaders()
    {
        const QTemporaryDir scratch;
        const auto restore = qScopeGuard([before = qgetenv("TMPDIR")] { qputenv("TMPDIR", before); });
        qputenv("TMPDIR", QFile::encodeName(scratch.path()));
        Stage stage;
        QCOMPARE(stage.pollFor("a"), 1);
        std::unique_ptr<PackageAccessor> old(stage.source->getAccessor());
        QCOMPARE(stage.pollFor("b"), 1);
        stage.answer(HttpAnswer::with(200, view("c")));
        stage.source->update(); // overtaken by the next one
        QCOMPARE(stage.poll(), 1);
        const std::unique_ptr<PackageAccessor> last(stage.source->getAccessor());
        QCOMPARE(Stage::ids(old.get()), "a"_s);
        old.reset();
        QDirIterator files(scratch.path(), QDir::Files, QDirIterator::Subdirectories);
        QVERIFY(!files.next().isEmpty() && !files.hasNext()); // only what somebody may still read
        const int directory = open(QFile::encodeName(files.fileInfo().path()).constData(), O_RDONLY);
        QVERIFY(directory >= 0 && flock(directory, LOCK_EX | LOCK_NB) != 0); // as it looks to a cleaner
        QCOMPARE(close(directory), 0);
        stage.source.reset();
        QCOMPARE(Stage::ids(last.get()), "c"_s);
    }

    void asksAgainWhileNothingComes()
    {
        Stage stage;
        stage.answer({{}, HttpAnswer::Stall, {}});
        for (int i = 0; i < 20; ++i)
            stage.source->update();
        // Six under way, as for any server, and the last one.
        QTRY_COMPARE(stage.source->findChildren<ts::Request *>().size(), hasDocuments ? 1 : 7);
        const auto openFiles = stage.source->findChildren<QFile *>();
        for (const QFile *file : openFiles) // their directories could not go everywhere
            QVERIFY(file->exists());
    }

    void survivesRestarts()
    {
        Stage stage;
        const auto persist = [&stage] {
            stage.news();
            stage.source->persist();
            return stage.news();
        };
        const auto restart = [&stage] {
            stage.start();
            return stage.news() + " "_s + stage.ids();
        };
        const QString persisted = " | info: Persisted package list HASH"_s;
        const QString loaded = hasDocuments ? " | info: Loaded persisted document list my:a+b%41&c\\ HASH "_s
                                            : " | info: Loaded persisted package list HASH "_s;
        QCOMPARE(persist(), QString());
        QVERIFY(stage.directory.exists() && stage.files().isEmpty());
        QCOMPARE(stage.pollFor("a"), 1);

        QLockFile lock(stage.directory.filePath(".lock"_s));
        QVERIFY(lock.lock());
        const QFuture<QString> persisting = QtConcurrent::run(persist);
        const bool waits = !QTest::qWaitFor([&persisting] { return persisting.isFinished(); }, 50);
        lock.unlock();
        QCOMPARE(persisting.result(), persisted);
        QVERIFY(waits);
        QCOMPARE(restart(), loaded + "a"_s);
        QCOMPARE(stage.poll(), 0);
        const QStringList first = stage.files();
        QCOMPARE(first.size(), 1);
        stage.write("older"_s, "x", -5);
        QCOMPARE(persist(), QString()); // only tidies up: the file is there
        QCOMPARE(stage.files(), first);

        // A copy that fails, here for a directory in its way, does not stop the removal either.
        QCOMPARE(stage.pollFor("b"), 1);
        QVERIFY(stage.directory.mkdir(".copy"_s));
        QCOMPARE(persist(), " | critical: Failed to persist package list HASH"_s);
        QVERIFY(stage.files().isEmpty() && stage.directory.rmdir(".copy"_s));
        QVERIFY(stage.directory.mkdir(".lock"_s)); // not a lock that somebody will give back
        QCOMPARE(persist(), " | critical: Failed to persist package list HASH"_s);
        QVERIFY(stage.directory.rmdir(".lock"_s));
        QVERIFY(QFile::link(stage.directory.filePath("elsewhere"_s), stage.directory.filePath(".copy"_s)));
        QCOMPARE(persist(), persisted);
        QVERIFY(ts::util::FileUtils::syncFile("/proc/self/comm"_s)); // which cannot be flushed

        // The newest file alone is looked at, and neither the lock nor half a copy is taken for one.
        stage.write("newest"_s, "", 5);
        stage.write(".copy"_s, "half", 9);
        QCOMPARE(restart(), " | critical: Persisted data verification failed, expected HASH got newest "_s);
        QCOMPARE(restart(), loaded + "b"_s);

        // A listing that is gone stays the current one: only another content is news.
        QVERIFY(stage.directory.remove(stage.files().constLast()));
        QCOMPARE(stage.ids(), QString());
        QCOMPARE(stage.poll(), 0);
        QCOMPARE(stage.pollFor("a"), 1);
    }

    void logsIn()
    {
        Stage stage;
        stage.server.setHandler([](const HttpRequest &request) {
            if (request.headers.value("authorization") == "Basic dXNlcjp3b3Jk")
                return HttpAnswer::with(200, view("a"));
            return HttpAnswer::with(401, QByteArray(), "WWW-Authenticate: Basic realm=\"db\"\r\n");
        });
        stage.start("user:word"_s);
        QCOMPARE(stage.poll(), 1);
        stage.answer(HttpAnswer::with(500));
        QCOMPARE(stage.poll(), 0);
        const QString news = stage.news();
        QVERIFY2(news.contains("critical"_s) && !news.contains(QRegularExpression("user|word"_s)),
                 qPrintable(news));
    }

    void survivesAFullDisk()
    {
        Stage stage;
        QCOMPARE(stage.pollFor("a"), 1);
        stage.source->persist();
        const QStringList before = stage.files();
        const QString fails = hasDocuments
                                  ? " | critical: Document package update failed with code  3 : "_s
                                  : " | critical: Failed to load package listing QUrl(/db) with code 200"_s;
        stage.answer(HttpAnswer::with(200, view(QByteArray(2000, 'b'))));
        for (const rlim_t size : {0, 500, 50000}) {
            stage.news();
            {
                const FileSizeLimit limit(size);
                QCOMPARE(stage.poll(), 0);
            }
            QCOMPARE(stage.ids(), "a"_s);
            const QString news = stage.news();
            QCOMPARE(hasDocuments ? news.left(fails.size()) : news, fails);
        }
        QCOMPARE(stage.poll(), 1);
        stage.news();
        for (const rlim_t size : {0, 500, 50000}) {
            const FileSizeLimit limit(size);
            stage.source->persist();
            QCOMPARE(stage.news(), " | critical: Failed to persist package list HASH"_s);
            QCOMPARE(stage.files(), size == 0 ? before : QStringList()); // without a lock nothing is touched
        }
        stage.source->persist();
        stage.start();
        QCOMPARE(stage.ids(), QString(2000, QLatin1Char('b')));
    }

    // A damaged listing that cannot be removed counts no more than one that can.
    void survivesAReadOnlyDirectory()
    {
        const Unprivileged unprivileged;
        Stage stage;
        QCOMPARE(stage.pollFor("a"), 1);
        stage.source->persist();
        if (!setWritable(stage.directory.path(), false))
            QSKIP("permissions do not bind here");
        stage.write(stage.files().constLast(), "damaged", 5);
        stage.start();
        QCOMPARE(stage.ids(), QString());
        QCOMPARE(stage.poll(), 1); // what it held is news again
        QCOMPARE(stage.pollFor("b"), 1);
        stage.news();
        stage.source->persist();
        QCOMPARE(stage.news(), " | critical: Failed to persist package list HASH"_s);
        QVERIFY(setWritable(stage.directory.path(), true));
        stage.source->persist();
        stage.start();
        QCOMPARE(stage.ids(), "b"_s);
    }

    void staysBelowPackages()
    {
        ts::data::Context context(QUrl("http://localhost:1"_s), "db"_s);
        for (const char *type : {"::", "../..", "a/../../b"})
            DocumentPackageSource(QString::fromLatin1(type), &context).persist();
        const QDir data(QStandardPaths::writableLocation(QStandardPaths::AppDataLocation));
        QCOMPARE(ts::Locations::dataLocation(), data);
        QStringList entries = data.entryList(QDir::AllEntries | QDir::NoDotAndDotDot);
        entries.removeAll("packages"_s);
        QCOMPARE(entries, QStringList());
    }
};

QTEST_GUILESS_MAIN(tst_DatabaseSources)
#include "tst_databasesources.moc"
