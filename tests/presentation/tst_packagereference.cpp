#include "index/packageindex.h"
#include "index/packagenode.h"
#include "presentation/packagereference.h"
#include "stage.h"
#include "support/fakeclock.h"
#include "support/logcapture.h"

#include <QtTest>

using namespace ts::pm;
using namespace ts::pm::test;

namespace {

// What p shows has to fit its status and type.
QString contradictions(const PackageReference &p)
{
    const bool isThere = p.status() != PackageReference::Unavailable;
    const bool isInstalled = p.status() == PackageReference::Installed;
    const QString title = isThere ? "of "_s + p.type() : QString();
    const bool consistent =
        p.manifestField("title"_s).toString() == title && p.manifest().value("title"_s).toString() == title
        && p.fileUrl("f"_s).toString() == (isThere ? "memory:/p/f"_s : QString())
        && p.snapshot().manifestField("title"_s).toString() == (isInstalled ? title : QString())
        && (isThere ? p.node()->packageIndex() == p.packageIndex().data() : !p.node() && !p.packageIndex())
        && (isThere ? p.installLocation().directory(false) == p.node()->installLocation().directory(false)
                    : p.type().isNull() && !p.installLocation().isValid());
    return consistent ? QString() : "contradiction"_s;
}

} // namespace

class tst_PackageReference : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void plays();
};

// What comes of a word: installers started (+) and destroyed (-), whether the sources are asked for news, and
// the signals, each with status and type at that moment.
void tst_PackageReference::plays()
{
    auto plays = rows(R"(
asks for news on every pass | follow[news] publish wait:121 publish[news] publish
appears by its status alone |
    version:a follow[news] publish[+1; statusChanged Installing a] succeed[statusChanged Installed a]
knows its status from the start | instantly version:a publish follow[+1]
    version:b publish[+1; -1; typeChanged Installed b, updated Installed b]
swaps when the new version is done | install[+1; statusChanged Installed a]
    version:b publish[+1] succeed[-1; typeChanged Installed b, updated Installed b]
status, then type, then update | incomplete[+1; statusChanged Incomplete a]
    version:b publish[+1] succeed[-1; statusChanged Installed b, typeChanged Installed b, updated Installed b]
waits for the newest version only | install[+1; statusChanged Installed a]
    version:b publish[+1] version:a publish[+1; -1] succeed[-1; updated Installed a]
goes at once, comes back | install[+1; statusChanged Installed a] publish[+1]
    gone publish[-2; news; statusChanged Unavailable] version:b publish[+1; statusChanged Installing b]
stays installed while the new version fails | install[+1; statusChanged Installed a]
    version:b publish[+1] fail wait:20 wait:12[+1; -1] fail wait:50 wait:12[+1; -1]
    succeed[-1; typeChanged Installed b, updated Installed b]
success starts the delays anew | incomplete[+1; statusChanged Incomplete a] wait:20 wait:12[+1]
    succeed[-1; statusChanged Installed a, updated Installed a] publish[+1] fail wait:20 wait:12[+1; -1]
one retry at a time | incomplete[+1; statusChanged Incomplete a]
    publish[+1] fail wait:40[+1; -1] fail wait:50 wait:12[+1; -1]
a failure during the retry arms none | incomplete[+1; statusChanged Incomplete a]
    never wait:40[+1] wait:9999 publish[+1; -1] wait:50 wait:12[+1; -1]
folds back to done with nothing pending | install[+1; statusChanged Installed a] require:q require:r instantly
    publish[+3; -1; updated Installed a] succeed:2 succeed:3
a required package fails after the swap | install[+1; statusChanged Installed a] require:q require:r instantly
    publish[+3; -1; updated Installed a] fail:2 succeed:3 wait:20 wait:12[+3; -3; updated Installed a]
)");
    QString delays =
        "delays grow to the longest | incomplete[+1; statusChanged Incomplete a] wait:20 wait:12[+1]"_s;
    for (int doubling = 1; doubling < 20; ++doubling) // 16 is the last that 32 bits of milliseconds hold
        delays += " fail wait:%1 wait:12[+1; -1]"_s.arg((30 << qMin(doubling, 16)) - 10);
    plays.append(Row(delays));
    for (const Row &row : qAsConst(plays)) {
        const LogCapture logging("tamsel.packages"_s);
        Stage stage;
        PackageReference *p = nullptr;
        std::unique_ptr<SignalLog> log;
        const auto installer = [&](const QString &number) {
            return number.isEmpty() ? stage.started.last() : stage.started.at(number.toInt());
        };
        const auto setVersion = [&](const QString &type) {
            stage.catalogue.packages.clear();
            stage.catalogue.addPackage("p"_s, type, {{"title"_s, "of "_s + type}});
        };
        const auto require = [&](const QString &other) { // after p, in the order of installers
            stage.catalogue.addPackage(other);
            stage.catalogue.addLink("p"_s, Requires, other);
        };
        const auto follow = [&] {
            p = stage.repository()->packageReference("p"_s);
            log = std::make_unique<SignalLog>(p);
            log->detail = [p] {
                return "%1 %2"_s.arg(QVariant::fromValue(p->status()).toString(), p->type()).trimmed();
            };
        };
        const auto start = [&] { setVersion("a"_s), stage.publish(), follow(); };
        const Verbs verbs{
            {"install"_s, [&](auto) { start(), installer({})->succeed(); }},
            {"incomplete"_s, [&](auto) { start(), installer({})->fail(); }},
            {"publish"_s, [&](auto) { stage.publish(); }},
            {"version"_s, setVersion},
            {"gone"_s, [&](auto) { stage.catalogue.packages.clear(); }},
            {"require"_s, require},
            {"follow"_s, [&](auto) { follow(); }},
            {"succeed"_s, [&](auto number) { installer(number)->succeed(); }},
            {"fail"_s, [&](auto number) { installer(number)->fail(); }},
            {"instantly"_s, [&](auto) { stage.succeedAtOnce.insert("p"_s); }},
            {"never"_s, [&](auto) { stage.failAtOnce.insert("p"_s); }},
            {"wait"_s, [](auto time) { FakeClock::advance(std::chrono::seconds(time.toInt())); }},
        };
        int startedBefore = 0;
        int goneBefore = 0;
        const auto effects = [&] {
            const int started = stage.started.size();
            const int gone = stage.started.count(nullptr);
            QStringList parts{"+%1"_s.arg(started - std::exchange(startedBefore, started)),
                              "-%1"_s.arg(gone - std::exchange(goneBefore, gone)),
                              std::exchange(stage.source.updateCalls, 0) > 0 ? "news"_s : QString(),
                              log ? log->take() : QString(), p ? contradictions(*p) : QString()};
            for (const QString &nothing : {"+0"_s, "-0"_s, QString()})
                parts.removeAll(nothing);
            return parts.join("; "_s);
        };
        QCOMPARE(row.with(perform(row[1], verbs, effects)), row.text());
        QCOMPARE(logging.lines().count("debug: Finished update of package \"p\""_s),
                 row[1].count("updated "_s));
    }
}

QTEST_GUILESS_MAIN(tst_PackageReference)
#include "tst_packagereference.moc"
