#include "index/packageindex.h"
#include "index/packagenode.h"
#include "presentation/manifestfilefield.h"
#include "presentation/manifeststringfield.h"
#include "presentation/packagelistmodel.h"
#include "stage.h"
#include "support/fakeclock.h"

#include <QFutureWatcher>
#include <QProcess>
#include <QRandomGenerator>
#include <QSemaphore>
#include <QtTest>

using namespace std::chrono_literals;
using namespace ts::pm;
using namespace ts::pm::test;

namespace {

/** Takes the packages that a test lists. */
class ListMatcher : public PackageMatcher
{
public:
    std::function<bool(PackageNode *)> matchFunction() const override
    {
        return [taken = ids, gate = gate](PackageNode *package) {
            if (gate)
                gate->acquire();
            return taken.contains(package->id().toString());
        };
    }

    QStringList ids;
    std::shared_ptr<QSemaphore> gate; // if set, a job waits here for each package
};

/** Orders packages as a test lists them. */
class ListSorter : public PackageSorter
{
public:
    std::function<bool(const PackageNode *, const PackageNode *)> sortFunction() const override
    {
        ++asked;
        return [order = ids](const PackageNode *a, const PackageNode *b) {
            return order.indexOf(a->id().toString()) < order.indexOf(b->id().toString());
        };
    }

    QStringList ids;
    mutable int asked = 0;
};

/** A list model that shows the packages that a test lists, in the order of that list; at first all. */
class ListStage : public Stage
{
public:
    explicit ListStage(const QStringList &ids)
        : timer(model.findChild<QTimer *>())
        , watcher(model.findChild<QFutureWatcherBase *>())
        , log(&model)
    {
        for (const QString &id : ids)
            catalogue.addPackage(id);
        publish();
        list(ids);
        model.setMatcher(&matcher);
        model.setSorter(&sorter);
        timer->setInterval(0);
        log.separator.clear();
        startJob();
        model.setPackageProvider(&provider);
        told();
    }

    void list(const QStringList &ids)
    {
        matcher.ids = ids;
        sorter.ids = ids;
        Q_EMIT matcher.updateRequested();
    }

    /** Waits until the model has started a job, if it means to. */
    void startJob() const
    {
        while (timer->isActive())
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }

    /** Waits until the model has come to rest. */
    void rest() const
    {
        startJob();
        while (watcher->isRunning())
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        QCoreApplication::processEvents();
    }

    /** The signals until the model has come to rest. */
    QString told()
    {
        rest();
        return log.take();
    }

    ListMatcher matcher;
    ListSorter sorter;
    PackageListModel model;
    QTimer *const timer;
    const QFutureWatcherBase *const watcher;
    ModelLog log;
};

/** The moves from one list to another, found by the plainest means: the farthest one first, and of several
 * the one that begins uppermost. */
QString plainMoves(QStringList rows, const QStringList &wanted)
{
    for (QStringList moves;;) {
        int from = 0;
        int to = 0;
        for (int row = 0; row < rows.size(); ++row) {
            const int target = wanted.indexOf(rows.at(row));
            if (std::abs(row - target) > std::abs(from - to))
                std::tie(from, to) = std::tie(row, target);
        }
        if (from == to)
            return moves.join(", "_s);
        moves.append("move %1 to %2"_s.arg(from).arg(to));
        rows.move(from, to);
    }
}

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
    void randomLists();
};

// What comes of a word: the signals; the rows, if they have changed; "job", if there was one that changed
// nothing. While a job is held, nothing is waited for. With a slow timer most of its interval passes after
// each word.
void tst_PackageListModel::plays()
{
    for (const Row &row : rows(R"(
first update is a reset | remove[reset, packageProviderChanged; none] other[packageProviderChanged] index[reset]
    index[reset] provide[packageProviderChanged, reset, countChanged; ABCDXYZ] index
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
    QCOMPARE(stage.told() + QString::fromLatin1(model.roleNames().value(32)), "title"_s);
    title.reset();
    QVERIFY(!model.data(first, 32).isValid() && model.data(first, 33).isValid());
    fields.clear(&fields);
    QCOMPARE(stage.log.take(), QString());
    QCOMPARE(stage.told(), "manifestFieldsChanged, reset"_s);
    QCOMPARE(model.roleNames(), (QHash<int, QByteArray>{{0, "id"}}));

    QCOMPARE(model.count(), 2);
    QCOMPARE(model.packageAt(1), "B"_s);
    QVERIFY(model.packageAt(-1).isNull() && model.packageAt(2).isNull());
    QCOMPARE(QVector<int>({model.indexOf("B"_s), model.indexOf("b"_s), model.indexOf({})}),
             QVector<int>({1, -1, 0}));
    QCOMPARE(model.manifestField(0, "title"_s), QJsonValue("Oak"_s));
    for (const int row : {-1, 1, 2})
        QVERIFY(model.manifestField(row, "title"_s).isUndefined());
    QCOMPARE(PackageListModel().findChild<QTimer *>()->interval(), 30);
}

// In turns packages come and go, and move, but never to the first row.
void tst_PackageListModel::randomLists()
{
    const quint32 seed = QRandomGenerator::global()->generate();
    qInfo("seed %u", seed);
    QRandomGenerator random(seed);
    QStringList ids;
    for (int i = 0; i < 60; ++i)
        ids.append(QString::number(100 + i));
    ListStage stage(ids);
    QStringList listed = ids;
    for (int i = 0; i < 200; ++i) {
        for (const QString &id : qAsConst(ids)) {
            if (random.bounded(10) == 0 && listed.contains(id) && listed.size() > 1)
                listed.removeOne(id);
            else if (random.bounded(5) == 0 && !listed.contains(id))
                listed.insert(random.bounded(1, listed.size() + 1), id);
        }
        stage.list(listed);
        stage.told();
        QCOMPARE(stage.log.rows(), listed.join(QString()));
        const QStringList before = listed;
        std::shuffle(listed.begin() + random.bounded(1, listed.size() + 1), listed.end(), random);
        stage.list(listed);
        QCOMPARE(stage.told(), plainMoves(before, listed));
        QCOMPARE(stage.log.rows(), listed.join(QString()));
    }
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
