#include "index/packageindex.h"
#include "index/packagenode.h"
#include "presentation/manifestfilefield.h"
#include "presentation/manifeststringfield.h"
#include "presentation/packagelistmodel.h"
#include "support/fakeclock.h"
#include "support/logcapture.h"
#include "support/stage.h"

#include <QtTest>

#include <limits>

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
        if (const auto deed = std::exchange(act, nullptr))
            deed();
        return [order = ids](const PackageNode *a, const PackageNode *b) {
            return order.indexOf(a->id().toString()) < order.indexOf(b->id().toString());
        };
    }

    QStringList ids;
    mutable int asked = 0;
    mutable std::function<void()> act; // once, when it is asked
};

/** Runs the event loop until that signal. Not processEvents(), which may deliver it and then wait for more.
 */
template<typename Sender, typename Signal>
void waitFor(const Sender *sender, Signal signal)
{
    QEventLoop loop;
    QObject::connect(sender, signal, &loop, &QEventLoop::quit);
    loop.exec();
}

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
            waitFor(timer, &QTimer::timeout);
    }

    /** Waits until the model has come to rest. */
    void rest() const
    {
        startJob();
        while (!watcher->isFinished()) // isRunning() ends before the watcher has heard of it
            waitFor(watcher, &QFutureWatcherBase::finished);
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
    QStringList moves;
    while (rows != wanted) {
        const auto distance = [&](int row) { return std::abs(row - wanted.indexOf(rows.at(row))); };
        int from = 0;
        for (int row = 1; row < rows.size(); ++row)
            from = distance(row) > distance(from) ? row : from;
        const int to = wanted.indexOf(rows.at(from));
        moves.append("move %1 to %2"_s.arg(from).arg(to));
        rows.move(from, to);
    }
    return moves.join(", "_s);
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

} // namespace

class tst_PackageListModel : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void plays();
    void announcedChangesMayNotCome();
    void roles();
    void randomLists();
    void quitsWhileAJobWaits();
};

// What comes of a word: the signals; the rows, if they have changed; "job", if there was one that changed
// nothing. While a job is held, nothing is waited for. With a slow timer most of its interval passes after
// each word.
void tst_PackageListModel::plays()
{
    for (const Row &row : rows(R"(
first update is a reset | provide[reset, packageProviderChanged; none] provide:other[packageProviderChanged]
    index[reset] index[reset] provide:own[packageProviderChanged, reset, countChanged; ABCDXYZ] index
repository goes | provide:other[reset, packageProviderChanged; none] index:A[reset, countChanged; A] destroy
    update[reset; none]
object that is no provider | provide:useless[reset, packageProviderChanged; none] provide
matcher changes and goes | second:B[remove 2-6, remove 0-0, countChanged; B] second:B tell destroy
    match[insert 0-0, insert 2-6, countChanged; ABCDXYZ] match
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
a burst gives one update | delay:1000 type:x[packageTypeChanged] type[packageTypeChanged] show:ABCDXY tell sorted
    match match:own sort publish index delay:0[reset, countChanged; ABCDXY]
a move to the first row delivers nothing | show:BCA[remove 3-6, move 0 to 2, countChanged; BCA] stick:ABCD
    show:BD[remove 1-2, insert 1-1, countChanged; BD] rest show:BCA[remove 1-1, insert 1-2, countChanged; BCA]
    stick:ABCD
overtaken result is dropped | hold show:A pass:AB[remove 2-6, countChanged; AB] free hold show:A
steps after the provider went away are run if they fit | show:AB[remove 2-6, countChanged; AB] hold show:XYBZ
    provide[reset, packageProviderChanged; none] publish free[insert 0-1, countChanged; XY]
    provide:own[packageProviderChanged, reset, countChanged; XYBZ]
late rows have no index to update from | show:AB[remove 2-6, countChanged; AB] hold show:XYAZ
    provide[reset, packageProviderChanged; none] free[insert 0-1, countChanged; XY] type:x[packageTypeChanged]
    type[packageTypeChanged] provide:own[packageProviderChanged, reset, countChanged; XYAZ]
late rows go before a job looks at them | show:AB[remove 2-6, countChanged; AB] hold show:XYAZ
    provide[reset, packageProviderChanged; none] free[insert 0-1, countChanged; XY] publish
    type:unknown[packageTypeChanged] block provide:own[packageProviderChanged]
lets go of its index | provide[reset, packageProviderChanged; none] publish rest freed
a listener's event loop brings a new index | at:rowsRemoved:BD
    show:XYZ[remove 0-3, reset, countChanged, countChanged; BD]
    at:rowsInserted:ZYX show:ABCD[insert 0-0, reset, countChanged; ZYX]
a sorter that is asked brings another index | index:A meanwhile:other
    show:ABCD[packageProviderChanged, reset, countChanged; A]
)")) {
        QThreadPool *const pool = QThreadPool::globalInstance();
        pool->setMaxThreadCount(4);
        auto other = std::make_unique<TestProvider>(); // without an index at first
        auto second = std::make_unique<ListMatcher>();
        MemorySource otherSource;
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
                otherSource.catalogue.addPackage(id), other->packageRepository()->addSource(&otherSource);
            QVERIFY(other->rebuild());
        };
        const auto stick = [&](const QString &ids) {
            pool->setMaxThreadCount(1);
            stage->list(letters(ids));
            stage->startJob();
            QVERIFY(waitForRoom()); // the job has come as far as to give up the one place
            isHeld = true;
        };
        SignalLog heard(&model);
        const auto nest = [&](const QString &text) { // signal, and what is listed meanwhile
            heard.deeds[text.section(":"_s, 0, 0)] = [&, ids = letters(text.section(":"_s, 1))] {
                stage->publish();
                stage->list(ids);
                stage->rest();
            };
        };
        const auto rest = [&] {
            QVERIFY(pool->waitForDone(30000));
            QCOMPARE(pool->activeThreadCount(), 0);
        };
        const QWeakPointer<PackageIndex> firstIndex = stage->repository()->packageIndex();
        const auto block = [&] {
            pool->setMaxThreadCount(1);
            // The first index goes when it ends, on that thread, and so before any other job begins.
            pool->start([gate, last = firstIndex.lock()] { gate->acquire(); });
            isHeld = true;
        };
        const LogCapture criticals("tamsel.packages"_s);
        const QHash<QString, QObject *> providers{
            {"own"_s, &stage->provider}, {"other"_s, other.get()}, {"useless"_s, pool}};
        const Verbs verbs{
            {"provide"_s, [&](auto name) { model.setPackageProvider(providers.value(name)); }},
            {"publish"_s, [&](auto) { stage->publish(); }},
            {"dropA"_s, [&](auto) { stage->catalogue.packages.removeFirst(); }},
            {"index"_s, index},
            {"destroy"_s, [&](auto) { other.reset(), second.reset(); }},
            {"update"_s, [&](auto) { stage->timer->start(); }},
            {"show"_s, [&](auto ids) { isHeld = isHeld && stage->matcher.gate, stage->list(letters(ids)); }},
            {"tell"_s, [&](auto) { Q_EMIT stage->matcher.updateRequested(); }},
            {"second"_s, [&](auto id) { second->ids = letters(id), model.setMatcher(second.get()); }},
            {"match"_s, [&](auto own) { model.setMatcher(own.isEmpty() ? nullptr : &stage->matcher); }},
            {"sorted"_s, [&](auto) { Q_EMIT stage->sorter.updateRequested(); }},
            {"sort"_s, [&](auto) { model.setSorter(nullptr); }},
            {"type"_s, [&](auto type) { model.setPackageType(type); }},
            {"delay"_s, [&](auto seconds) { stage->timer->setInterval(seconds.toInt() * 1000); }},
            {"hold"_s, [&](auto) { hold(true); }},
            {"pass"_s, [&](auto ids) { hold(false), stage->list(letters(ids)); }},
            {"free"_s, [&](auto) { hold(false), gate->release(7); }},
            {"stick"_s, stick},
            {"rest"_s, [&](auto) { rest(); }},
            {"block"_s, [&](auto) { block(); }},
            {"meanwhile"_s,
             [&](auto name) {
                 stage->sorter.act = [&, name] { model.setPackageProvider(providers.value(name)); };
             }},
            {"freed"_s, [&](auto) { QVERIFY(!firstIndex); }},
            {"at"_s, nest},
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
        QCOMPARE(criticals.lines().size(), row[1].count("useless"_s));
        stage.reset();
        gate->release(7);
        rest(); // also the jobs of a model that is gone come to their end
    }
}

// A listener that hears of a change to come takes the rows away. The tester minds, so the model has none.
void tst_PackageListModel::announcedChangesMayNotCome()
{
    for (const Row &row : rows(R"(
        rowsAboutToBeRemoved  | AYZ
        rowsAboutToBeInserted | ABCXYZ
        rowsAboutToBeMoved    | ACBYZ)")) {
        ListStage stage(letters("ABCDXYZ"_s));
        PackageListModel model;
        SignalLog heard(&model);
        model.findChild<QTimer *>()->setInterval(0);
        model.setMatcher(&stage.matcher);
        model.setSorter(&stage.sorter);
        stage.list(letters("ABCYZ"_s));
        const auto shown = [&model] {
            QString ids;
            for (int i = 0; i < model.rowCount(); ++i)
                ids += model.packageAt(i);
            return ids;
        };
        model.setPackageProvider(&stage.provider);
        QTRY_COMPARE(shown(), "ABCYZ"_s);
        heard.deeds[row[0]] = [&] { model.setPackageProvider(nullptr); };
        stage.list(letters(row[1]));
        QTRY_VERIFY(heard.deeds.isEmpty());
        model.setPackageProvider(&stage.provider);
        QTRY_COMPARE(row.with(shown()), row.text());
    }
}

void tst_PackageListModel::roles()
{
    ListStage stage(letters("AB"_s));
    stage.catalogue.manifests["A"_s] = json(R"({"title": "Oak", "picture": "oak.png"})"_s);
    stage.publish();
    stage.told();
    auto title = std::make_unique<ManifestStringField>();
    title->setName("title"_s);
    ManifestFileField picture;
    picture.setName("picture"_s);
    PackageListModel &model = stage.model;
    QQmlListProperty<ManifestField> fields = model.manifestFields();
    fields.append(&fields, title.get());
    fields.append(&fields, &picture);
    QCOMPARE(model.roleNames(), (QHash<int, QByteArray>{{0, "id"}}));
    model.componentComplete();
    QCOMPARE(stage.log.take() + stage.told(), "manifestFieldsChanged, reset"_s);
    QCOMPARE(model.roleNames(), (QHash<int, QByteArray>{{0, "id"}, {32, "title"}, {33, "picture"}}));
    QCOMPARE(stage.log.rows(), "A/Oak/memory:/A/oak.pngB//"_s); // a file also before it is installed
    for (const int role : {std::numeric_limits<int>::min(), -1, 1, 31, 34, int(Qt::UserRole)})
        QVERIFY(!model.data(model.index(0), role).isValid());
    QVERIFY(!model.data(QModelIndex(), 0).isValid() && model.rowCount(model.index(0)) == 0);

    title->setName("other"_s);
    QCOMPARE(stage.told() + QString::fromLatin1(model.roleNames().value(32)), "title"_s);
    title.reset();
    QVERIFY(!model.data(model.index(0), 32).isValid() && model.data(model.index(0), 33).isValid());
    fields.clear(&fields);
    QCOMPARE(stage.log.take() + "/"_s + stage.told(), "/manifestFieldsChanged, reset"_s);
    QCOMPARE(model.roleNames(), (QHash<int, QByteArray>{{0, "id"}}));

    QStringList answers;
    for (const int row : {-1, 0, 1, 2})
        answers += {model.packageAt(row), model.manifestField(row, "title"_s).toString("-"_s)};
    for (const QString &id : {"B"_s, "b"_s, QString()})
        answers += QString::number(model.indexOf(id));
    QCOMPARE(answers.join(" "_s), " - A Oak B -  - 1 -1 0"_s);
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

// Comes last: leaves a model behind, with a job that waits, when the process ends.
void tst_PackageListModel::quitsWhileAJobWaits()
{
    QThreadPool::globalInstance()->setMaxThreadCount(1);
    static ListStage *const stage = new ListStage(letters("ABC"_s));
    stage->list(letters("BCA"_s));
    stage->told();
    stage->list(letters("ABC"_s));
    stage->startJob();
    QVERIFY(waitForRoom() && stage->watcher->isRunning());
}

QTEST_GUILESS_MAIN(tst_PackageListModel)
#include "tst_packagelistmodel.moc"
