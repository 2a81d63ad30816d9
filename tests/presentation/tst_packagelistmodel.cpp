#include "index/packageindex.h"
#include "liststage.h"
#include "presentation/manifestfilefield.h"
#include "presentation/manifeststringfield.h"
#include "support/fakeclock.h"

#include <QProcess>
#include <QThreadPool>
#include <QtTest>

using namespace std::chrono_literals;
using namespace ts::pm;
using namespace ts::pm::test;

namespace {

QStringList letters(const QString &text)
{
    return text.split(QString(), Qt::SkipEmptyParts);
}

// Waits until a thread pool of one place has room for another job.
bool waitForRoom()
{
    const auto ran = std::make_shared<QSemaphore>();
    QThreadPool::globalInstance()->start([ran] { ran->release(); });
    return ran->tryAcquire(1, 30000);
}

// In a process of its own, which keeps its stage until the very end.
int quitWhileAJobWaits()
{
    int argc = 1;
    char name[] = "quit";
    char *argv[] = {name, nullptr};
    static ListStage *stage = nullptr;
    const QCoreApplication application(argc, argv);
    QThreadPool::globalInstance()->setMaxThreadCount(1);
    stage = new ListStage(letters("ABC"_s));
    stage->list(letters("BCA"_s));
    stage->told();
    stage->list(letters("ABC"_s));
    stage->startJob();
    return waitForRoom() ? 0 : 1;
}

} // namespace

class tst_PackageListModel : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void plays();
    void quitsWhileAJobWaits();
    void roles();
};

// What comes of a word: the signals; the rows, if they have changed; "job", if there was one that changed
// nothing. While a job is held, nothing is waited for. With a slow timer most of its interval passes after
// each word.
void tst_PackageListModel::plays()
{
    for (const Row &row : rows(R"(
first update is a reset | remove[reset, packageProviderChanged; none] other[packageProviderChanged] index[reset]
    index[reset] provide[packageProviderChanged, reset, countChanged; ABCDXYZ] index
provider goes and comes | provide remove[reset, packageProviderChanged; none] publish update
    provide[packageProviderChanged, reset, countChanged; ABCDXYZ]
repository goes |
    other[reset, packageProviderChanged; none] index:A[reset, countChanged; A] destroy update[reset; none]
matcher changes and goes | second:B[remove 2-6, remove 0-0, countChanged; B] again tell lose
    unmatch[insert 0-0, insert 2-6, countChanged; ABCDXYZ] unmatch
removals and insertions | show:ADXZ[remove 5-5, remove 1-2, countChanged; ADXZ] show:ADXZ[job]
    show:AYXB[remove 3-3, remove 1-1, insert 1-1, insert 3-3; AYXB]
    show:CDAYXBZ[insert 0-1, insert 6-6, countChanged; CDAYXBZ]
moves | show:ABC[remove 3-6, countChanged; ABC] show:CBA[move 0 to 2, move 0 to 1; CBA]
    show:CBAD[insert 3-3, countChanged; CBAD] show:BCDA[move 0 to 1, move 2 to 3; BCDA]
    show:BACD[move 3 to 1; BACD]
    show:BZCXA[remove 3-3, insert 1-1, insert 3-3, move 2 to 4, move 2 to 3, countChanged; BZCXA]
new index is one reset | publish[reset] dropA publish[reset, countChanged; BCDXYZ]
type | type:plant[packageTypeChanged, remove 0-5, countChanged; Z]
    type:unknown[packageTypeChanged, reset, countChanged; none]
    type:plant[packageTypeChanged, reset, countChanged; Z]
a burst gives one update | slow type:x[packageTypeChanged] type[packageTypeChanged] show:ABCDXY tell sort unmatch
    match unsort publish index hurry[reset, countChanged; ABCDXY]
a move to the first row delivers nothing | show:BCA[remove 3-6, move 0 to 2, countChanged; BCA] stick:ABCD
    show:BD[remove 1-2, insert 1-1, countChanged; BD] rest show:BCA[remove 1-1, insert 1-2, countChanged; BCA]
    stick:ABCD
overtaken result is dropped | hold show:A pass:AB[remove 2-6, countChanged; AB] free hold show:A
steps after the provider went away are run if they fit | show:AB[remove 2-6, countChanged; AB] hold show:XYAZ
    remove[reset, packageProviderChanged; none] publish free[insert 0-1, countChanged; XY]
    provide[packageProviderChanged, reset, countChanged; XYAZ]
)")) {
        QThreadPool *const pool = QThreadPool::globalInstance();
        pool->setMaxThreadCount(4);
        MemorySource otherSource;
        otherSource.catalogue.addPackage("A"_s);
        auto other = std::make_unique<TestProvider>(); // without an index at first
        auto second = std::make_unique<ListMatcher>();
        auto stage = std::make_unique<ListStage>(letters("ABCDXYZ"_s));
        PackageListModel &model = stage->model;
        stage->catalogue.packages.last().type = "plant:tree"_s;
        stage->publish();
        stage->told();
        const auto gate = std::make_shared<QSemaphore>();
        bool isHeld = false;
        const auto hold = [&](bool on) { isHeld = on, stage->matcher.gate = on ? gate : nullptr; };
        const auto index = [&](const QString &id) {
            if (!id.isEmpty())
                other->packageRepository()->addSource(&otherSource);
            QVERIFY(other->rebuild());
        };
        const auto stick = [&](const QString &ids) {
            pool->setMaxThreadCount(1);
            stage->list(letters(ids));
            stage->startJob();
            QVERIFY(waitForRoom()); // the job has come as far as to give up the one place
            isHeld = true;
        };
        const auto rest = [&] {
            QVERIFY(pool->waitForDone(30000));
            QCOMPARE(pool->activeThreadCount(), 0);
        };
        const Verbs verbs{
            {"provide"_s, [&](auto) { model.setPackageProvider(&stage->provider); }},
            {"remove"_s, [&](auto) { model.setPackageProvider(nullptr); }},
            {"publish"_s, [&](auto) { stage->publish(); }},
            {"dropA"_s, [&](auto) { stage->catalogue.packages.removeFirst(); }},
            {"other"_s, [&](auto) { model.setPackageProvider(other.get()); }},
            {"index"_s, index},
            {"destroy"_s, [&](auto) { other.reset(); }},
            {"update"_s, [&](auto) { stage->timer->start(); }},
            {"show"_s, [&](auto ids) { isHeld = isHeld && stage->matcher.gate, stage->list(letters(ids)); }},
            {"tell"_s, [&](auto) { Q_EMIT stage->matcher.updateRequested(); }},
            {"second"_s, [&](auto id) { second->ids = letters(id), model.setMatcher(second.get()); }},
            {"again"_s, [&](auto) { model.setMatcher(second.get()), model.setSorter(&stage->sorter); }},
            {"lose"_s, [&](auto) { second.reset(); }},
            {"match"_s, [&](auto) { model.setMatcher(&stage->matcher); }},
            {"unmatch"_s, [&](auto) { model.setMatcher(nullptr); }},
            {"sort"_s, [&](auto) { Q_EMIT stage->sorter.updateRequested(); }},
            {"unsort"_s, [&](auto) { model.setSorter(nullptr); }},
            {"type"_s, [&](auto type) { model.setPackageType(type); }},
            {"slow"_s, [&](auto) { stage->timer->setInterval(1000s); }},
            {"hurry"_s, [&](auto) { stage->timer->setInterval(0); }},
            {"hold"_s, [&](auto) { hold(true); }},
            {"pass"_s, [&](auto ids) { hold(false), stage->list(letters(ids)); }},
            {"free"_s, [&](auto) { hold(false), gate->release(7); }},
            {"stick"_s, stick},
            {"rest"_s, [&](auto) { rest(); }},
        };
        int jobsBefore = stage->sorter.asked;
        stage->log.takeWithRows();
        const auto effects = [&] {
            if (stage->timer->interval() > 0)
                FakeClock::advance(700s);
            else if (isHeld)
                stage->startJob();
            else
                stage->rest();
            const QString told = stage->log.takeWithRows();
            const int jobs = stage->sorter.asked - std::exchange(jobsBefore, stage->sorter.asked);
            return jobs > 0 && !isHeld && told.isEmpty() ? "job"_s : told;
        };
        QCOMPARE(row.with(perform(row[1], verbs, effects)), row.text());
        stage.reset();
        gate->release(7);
        rest(); // also the jobs of a model that is gone come to their end
    }
}

void tst_PackageListModel::quitsWhileAJobWaits()
{
    QProcess process;
    process.start(QCoreApplication::applicationFilePath(), {"--quit"_s});
    QVERIFY(process.waitForFinished());
    QCOMPARE(process.exitStatus(), QProcess::NormalExit);
    QCOMPARE(process.exitCode(), 0);
}

void tst_PackageListModel::roles()
{
    ListStage stage(letters("AB"_s));
    stage.catalogue.manifests["A"_s] = R"({"title": "Oak", "picture": "oak.png"})"_json;
    stage.publish();
    stage.told();
    auto title = std::make_unique<ManifestStringField>();
    title->setName("title"_s);
    ManifestFileField picture;
    picture.setName("picture"_s);
    const PackageListModel &model = stage.model;
    QQmlListProperty<ManifestField> fields = stage.model.manifestFields();
    fields.append(&fields, title.get());
    fields.append(&fields, &picture);
    QCOMPARE(fields.count(&fields), 2);
    QCOMPARE(fields.at(&fields, 1), &picture);
    QCOMPARE(model.roleNames(), (QHash<int, QByteArray>{{0, "id"}}));
    stage.model.componentComplete();
    QCOMPARE(stage.log.take(), "manifestFieldsChanged, reset"_s);
    QCOMPARE(stage.told(), QString());
    QCOMPARE(model.roleNames(), (QHash<int, QByteArray>{{0, "id"}, {32, "title"}, {33, "picture"}}));
    QCOMPARE(stage.log.rows(), "A/Oak/memory:/A/oak.pngB//"_s); // a file also before it is installed
    const QModelIndex first = model.index(0);
    for (const int role : {-1, 1, 31, 34, int(Qt::UserRole)})
        QVERIFY(!model.data(first, role).isValid());
    QVERIFY(!model.data(QModelIndex(), 0).isValid() && model.rowCount(first) == 0);

    title->setName("other"_s);
    QCOMPARE(stage.told(), QString());
    QCOMPARE(model.roleNames().value(32), QByteArray("title"));
    title.reset();
    QVERIFY(!model.data(first, 32).isValid() && model.data(first, 33).isValid());
    fields.clear(&fields);
    QCOMPARE(stage.log.take(), QString());
    QCOMPARE(stage.told(), "manifestFieldsChanged, reset"_s);
    QCOMPARE(model.roleNames(), (QHash<int, QByteArray>{{0, "id"}}));
    fields.clear(&fields);
    QCOMPARE(stage.told(), QString());

    QCOMPARE(model.count(), 2);
    QCOMPARE(model.packageAt(1), "B"_s);
    QVERIFY(model.packageAt(-1).isNull() && model.packageAt(2).isNull());
    QCOMPARE(QVector<int>({model.indexOf("B"_s), model.indexOf("b"_s), model.indexOf({})}),
             QVector<int>({1, -1, 0}));
    QCOMPARE(model.manifestField(0, "title"_s), QJsonValue("Oak"_s));
    for (const int row : {-1, 1, 2})
        QVERIFY(model.manifestField(row, "title"_s).isUndefined());
    const PackageListModel fresh;
    QCOMPARE(fresh.indexOf(QString()), 0);
    QCOMPARE(fresh.findChild<QTimer *>()->interval(), 30);
}

int main(int argc, char *argv[])
{
    if (argc > 1 && qstrcmp(argv[1], "--quit") == 0)
        return quitWhileAJobWaits();
    const QCoreApplication application(argc, argv);
    tst_PackageListModel test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_packagelistmodel.moc"
