// What a keystroke and a change of order cost the thread of the user interface, in processor time, while a
// ListView watches: a PackageListModel against a QSortFilterProxyModel on the same packages. The window is
// not shown, so that drawing, which is the same for both, does not hide the difference.

#include "support/ratioreporter.h"
#include "support/syntheticcatalogue.h"

#include <Tamsel/Locations>
#include <TamselPackageManager/IPackageProvider>
#include <TamselPackageManager/KeywordNode>
#include <TamselPackageManager/ManifestStringField>
#include <TamselPackageManager/MatchesKeywordSearch>
#include <TamselPackageManager/PackageListModel>
#include <TamselPackageManager/PackageNode>
#include <TamselPackageManager/PackageReference>
#include <TamselPackageManager/PackageRepository>
#include <TamselPackageManager/SortByStringField>

#include <QDir>
#include <QElapsedTimer>
#include <QGuiApplication>
#include <QLocale>
#include <QQmlComponent>
#include <QQmlContext>
#include <QQmlEngine>
#include <QQuickItem>
#include <QSortFilterProxyModel>
#include <QTemporaryDir>
#include <QTimer>

#include <algorithm>
#include <ctime>
#include <functional>
#include <map>

namespace {

using namespace ts::pm;
using namespace ts::pm::bench;

constexpr int checkInterval = 100; // milliseconds

double threadMilliseconds()
{
    timespec time;
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return double(time.tv_sec) * 1e3 + double(time.tv_nsec) / 1e6;
}

/** The words typed, one letter after another, and taken back. */
QStringList keystrokes()
{
    QStringList texts;
    for (const char *word : {"brau", "schle", "an", "greido"}) {
        const QString text = QString::fromLatin1(word);
        for (int length = 1; length <= text.size(); ++length)
            texts << text.left(length);
        for (int length = text.size() - 1; length >= 0; --length)
            texts << text.left(length);
    }
    return texts;
}

/** The packages as a plain model, for the proxy model to filter by the text of their keywords. */
class FlatModel : public QAbstractListModel
{
    Q_OBJECT

public:
    enum Role { TitleRole = Qt::UserRole, KeywordsRole };

    explicit FlatModel(const QSharedPointer<PackageIndex> &index)
    {
        for (const PackageNode *package : PackageIndex::selectPackages(index, {}, {}, {})) {
            QStringList words;
            for (const KeywordNode *keyword : package->keywords()) {
                words << keyword->displayString().toString();
                for (const QStringRef &word : keyword->suggestions(QStringRef()))
                    words << word.toString();
            }
            rows.append({package->id().toString(), words.join(QLatin1Char('\n'))});
        }
    }

    int rowCount(const QModelIndex &parent = QModelIndex()) const override
    {
        return parent.isValid() ? 0 : rows.size();
    }
    QVariant data(const QModelIndex &index, int role) const override
    {
        const Row &row = rows.at(index.row());
        return role == KeywordsRole ? row.keywords : row.title;
    }
    QHash<int, QByteArray> roleNames() const override
    {
        return {{TitleRole, QByteArrayLiteral("title")}, {KeywordsRole, QByteArrayLiteral("keywords")}};
    }

private:
    struct Row
    {
        QString title;
        QString keywords;
    };
    QVector<Row> rows;
};

/** A list of packages with a view on it. Each action returns what it cost the thread, in milliseconds. */
class ListSession
{
public:
    ListSession() = default;
    virtual ~ListSession() = default;

    double type(const QString &text)
    {
        return measure([&] { search(text); });
    }
    double changeOrder()
    {
        return measure([&] { reorder(); });
    }

protected:
    virtual void search(const QString &text) = 0;
    virtual void reorder() = 0;

    void watch(QAbstractItemModel *model, bool promptly)
    {
        engine.addImportPath(QCoreApplication::applicationDirPath() + QStringLiteral("/../../qml"));
        engine.rootContext()->setContextProperty(QStringLiteral("promptly"), promptly);
        engine.rootContext()->setContextProperty(QStringLiteral("packages"), model);
        QQmlComponent component(&engine);
        component.setData(
            "import QtQuick 2.15\n"
            "import Tamsel.PackageManager 1.0\n"
            "ListView { width: 800; height: 600; model: packages; PromptLayout.enabled: promptly\n"
            "    delegate: Text { height: 30; text: title } }",
            QUrl());
        view.reset(qobject_cast<QQuickItem *>(component.create()));
        if (!view)
            qFatal("%s", qPrintable(component.errorString()));
    }
    void forget() { view.reset(); }

private:
    Q_DISABLE_COPY(ListSession)

    double measure(const std::function<void()> &action)
    {
        const double start = threadMilliseconds();
        action();
        QMetaObject::invokeMethod(view.data(), "forceLayout");
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        return threadMilliseconds() - start;
    }

    QQmlEngine engine;
    QScopedPointer<QQuickItem> view;
};

class ProxySession : public ListSession
{
public:
    explicit ProxySession(int size)
        : flat(syntheticIndex(size))
    {
        proxy.setSourceModel(&flat);
        proxy.setFilterRole(FlatModel::KeywordsRole);
        proxy.setFilterCaseSensitivity(Qt::CaseInsensitive);
        proxy.setSortRole(FlatModel::TitleRole);
        watch(&proxy, false);
    }
    ~ProxySession() override { forget(); }

protected:
    void search(const QString &text) override { proxy.setFilterFixedString(text); }
    void reorder() override { proxy.sort(proxy.sortColumn() == 0 ? -1 : 0); }

private:
    FlatModel flat;
    QSortFilterProxyModel proxy;
};

class Provider : public QObject, public IPackageProvider
{
    Q_OBJECT
    Q_INTERFACES(ts::pm::IPackageProvider)

public:
    PackageRepository *packageRepository() const override { return repository; }
    PackageReference *packageReference(const QString &id) override
    {
        return repository->packageReference(id);
    }

private:
    PackageRepository *const repository = new PackageRepository(PackageRepository::PersistOnRequest, this);
};

class ModelSession : public ListSession
{
public:
    explicit ModelSession(int size, bool promptly = false)
        : source(size)
    {
        title.setName(QStringLiteral("title"));
        sorter.setName(QStringLiteral("title"));
        QQmlListProperty<ManifestField> fields = model.manifestFields();
        fields.append(&fields, &title);
        model.componentComplete();
        model.setMatcher(&matcher);
        QObject::connect(&model, &QAbstractItemModel::modelReset, [this] { ++resets; });
        provider.packageRepository()->addSource(&source);
        waitFor([this] { return !provider.packageRepository()->packageIndex().isNull(); });
        model.setPackageProvider(&provider);
        waitForRows(QString());
        watch(&model, promptly);
    }
    ~ModelSession() override
    {
        forget();
        provider.packageRepository()->removeSource(&source);
    }

protected:
    void search(const QString &text) override
    {
        matcher.setSearchString(text);
        waitForRows(text);
    }

    // As an application does it: through a reset.
    void reorder() override
    {
        model.setPackageProvider(nullptr);
        model.setSorter(model.sorter() ? nullptr : &sorter);
        model.setPackageProvider(&provider);
        const int before = resets;
        waitFor([&] { return resets > before; });
    }

private:
    static void waitFor(const std::function<bool()> &condition)
    {
        QTimer look; // makes the event loop return when nothing else does
        look.start(checkInterval);
        while (!condition())
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }

    void waitForRows(const QString &text)
    {
        if (!expected.contains(text)) {
            MatchesKeywordSearch all;
            all.setSearchString(text);
            expected.insert(text, PackageIndex::selectPackages(provider.packageRepository()->packageIndex(),
                                                               {}, all.matchFunction(), {})
                                      .size());
        }
        waitFor([&] { return model.count() == expected.value(text); });
    }

    SyntheticSource source;
    Provider provider;
    ManifestStringField title;
    MatchesKeywordSearch matcher;
    SortByStringField sorter;
    PackageListModel model;
    int resets = 0;
    QHash<QString, int> expected;
};

class PromptSession : public ModelSession
{
public:
    explicit PromptSession(int size)
        : ModelSession(size, true)
    {
    }
};

struct Figures
{
    std::vector<double> keystrokes;
    std::vector<double> orders;
};

// One session serves all benchmarks of a variant and a size; they differ in what they make of its figures.
template<typename Session>
const Figures &figures(int size)
{
    static std::map<int, Figures> known;
    Figures &result = known[size];
    if (!result.keystrokes.empty())
        return result;
    Session session(size);
    for (int round = 0; round < 2; ++round) { // the first one warms up
        result = Figures();
        for (const QString &text : keystrokes())
            result.keystrokes.push_back(session.type(text));
        for (int i = 0; i < 6; ++i)
            result.orders.push_back(session.changeOrder());
    }
    std::sort(result.keystrokes.begin(), result.keystrokes.end());
    std::sort(result.orders.begin(), result.orders.end());
    return result;
}

template<typename Session, std::vector<double> Figures::*which, bool worst>
void report(benchmark::State &state)
{
    for (auto _ : state) {
        const std::vector<double> &milliseconds = figures<Session>(int(state.range(0))).*which;
        state.SetIterationTime((worst ? milliseconds.back() : milliseconds[milliseconds.size() / 2]) / 1e3);
    }
}

void allSizes(benchmark::internal::Benchmark *benchmark)
{
    for (const int size : sizes)
        benchmark->Arg(size);
    benchmark->Unit(benchmark::kMillisecond)->Iterations(1)->UseManualTime();
}

#define TAMSEL_REPORT(Session, variant)                              \
    BENCHMARK_TEMPLATE(report, Session, &Figures::keystrokes, false) \
        ->Name("keystroke_middle/" variant)                          \
        ->Apply(allSizes);                                           \
    BENCHMARK_TEMPLATE(report, Session, &Figures::keystrokes, true)  \
        ->Name("keystroke_worst/" variant)                           \
        ->Apply(allSizes);                                           \
    BENCHMARK_TEMPLATE(report, Session, &Figures::orders, false)     \
        ->Name("order_middle/" variant)                              \
        ->Apply(allSizes);                                           \
    BENCHMARK_TEMPLATE(report, Session, &Figures::orders, true)->Name("order_worst/" variant)->Apply(allSizes)

TAMSEL_REPORT(ProxySession, "baseline");
TAMSEL_REPORT(ModelSession, "model");
TAMSEL_REPORT(PromptSession, "prompt");

} // namespace

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    static const QTemporaryDir data; // the locks of static indexes lie there
    if (!ts::Locations::setDataLocation(QDir(data.path())))
        return 1;
    QGuiApplication application(argc, argv);
    QLocale::setDefault(QLocale(QStringLiteral("de_DE")));
    return runBenchmarks(argc, argv);
}

#include "listviewbenchmark.moc"
