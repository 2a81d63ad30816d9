// Ledgers of packages with a manifest of about 400 bytes and four files each.
// - verify: a ledger read with its signatures, against libsodium alone that verifies the same messages on
//   as many threads;
// - parse: the same without signatures, against one pass over the packages that enters each file in a hash;
// - index: an index built from a ledger, against one built from the same records in memory.

#include "support/ratioreporter.h"
#include "support/signedledger.h"
#include "support/syntheticcatalogue.h"

#include <TamselPackageManager/PackageLedger>

#include "server/packageserveraccessor.h"

#include <Tamsel/Locations>

#include <QCoreApplication>
#include <QDir>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLocale>
#include <QLoggingCategory>
#include <QTemporaryDir>
#include <QThreadPool>
#include <QtEndian>

#include <sodium.h>

#include <atomic>
#include <map>
#include <memory>
#include <thread>

namespace {

using namespace ts::pm;
using namespace ts::pm::bench;
using ts::pm::test::SignedLedger;

constexpr int filesPerPackage = 4;
constexpr int derPrefix = 12; // of a public key, before its 32 bytes

QByteArray manifestOf(const PackageInfo &package, int number)
{
    const auto text = [&](const char *language) {
        return QStringLiteral(
                   "%1 is a made-up thing of type %2, described in %3 as such things are described: by "
                   "its look, its place and its season.")
            .arg(package.id, package.type, QLatin1String(language));
    };
    return QJsonDocument({{QStringLiteral("type"), package.type},
                          {QStringLiteral("title"), package.id},
                          {QStringLiteral("size"), number * 17},
                          {QStringLiteral("free"), number % 3 == 0},
                          {QStringLiteral("description"), text("German")},
                          {QStringLiteral("summary"), text("English")}})
        .toJson(QJsonDocument::Compact);
}

/** A synthetic catalogue as a signed ledger. */
SignedLedger signedLedger(const SyntheticCatalogue &catalogue)
{
    SignedLedger ledger;
    std::map<QString, quint32> packages;
    std::map<QString, quint32> keywords;
    for (int i = 0; i < catalogue.packages.size(); ++i) {
        const PackageInfo &package = catalogue.packages.at(i);
        SignedLedger::Contents files;
        for (int file = 0; file < filesPerPackage; ++file)
            files.insert("content/file-" + QByteArray::number(file) + ".dat", package.id.toUtf8());
        packages[package.id] =
            ledger.addPackage(package.id.toUtf8(), package.type.toUtf8(), manifestOf(package, i), files);
    }
    for (const KeywordInfo &keyword : catalogue.keywords) {
        QMap<QByteArray, QVector<QByteArray>> values;
        for (const LangString &string : keyword.strings)
            values[string.language.toUtf8()].append(string.sg.toUtf8() + '\0' + string.pl.toUtf8());
        keywords[keyword.id] = ledger.addKeyword(keyword.id.toUtf8(), quint8(keyword.type), values);
    }
    for (const LinkInfo &link : catalogue.links) {
        const auto from = packages.find(link.from);
        const auto to = packages.find(link.to);
        ledger.records.links.append(
            {quint8(link.type),
             quint8((from != packages.end() ? 0x01 : 0) | (to != packages.end() ? 0x10 : 0)),
             from != packages.end() ? from->second : keywords.at(link.from),
             to != packages.end() ? to->second : keywords.at(link.to)});
    }
    return ledger;
}

struct Document
{
    explicit Document(int packageCount)
    {
        SignedLedger ledger = signedLedger(syntheticCatalogue(packageCount));
        publicKey = ledger.records.issuers.at(0).publicKey.mid(derPrefix);
        for (const auto &package : qAsConst(ledger.records.packages)) {
            messages.append(ledger.statement(package));
            signatures.append(package.signature);
        }
        bytes = ledger.toByteArray();
        ledger.records.issuers[0].signature[0] = char(ledger.records.issuers[0].signature[0] ^ 1);
        forged = ledger.toByteArray();
    }

    QByteArray bytes;
    QByteArray forged; // parsed whole, and given up at the first signature
    QByteArray publicKey;
    QVector<QByteArray> messages;
    QVector<QByteArray> signatures;
};

const Document &documentOf(const benchmark::State &state)
{
    static std::map<int, std::unique_ptr<Document>> documents;
    auto &document = documents[int(state.range(0))];
    if (!document)
        document = std::make_unique<Document>(int(state.range(0)));
    return *document;
}

const unsigned char *unsignedBytes(const QByteArray &bytes)
{
    return reinterpret_cast<const unsigned char *>(bytes.constData());
}

void sodiumVerify(benchmark::State &state)
{
    const Document &document = documentOf(state);
    const int count = document.messages.size();
    for (auto _ : state) {
        std::atomic<int> next(0);
        std::atomic<int> good(0);
        const auto verify = [&] {
            for (int i = next++; i < count; i = next++) {
                const QByteArray &message = document.messages.at(i);
                if (crypto_sign_verify_detached(
                        unsignedBytes(document.signatures.at(i)), unsignedBytes(message),
                        static_cast<unsigned long long>(message.size()), unsignedBytes(document.publicKey))
                    == 0)
                    ++good;
            }
        };
        std::vector<std::thread> threads;
        for (int i = 0; i < QThreadPool::globalInstance()->maxThreadCount(); ++i)
            threads.emplace_back(verify);
        verify();
        for (std::thread &thread : threads)
            thread.join();
        if (good != count)
            state.SkipWithError("a bad signature");
    }
    state.counters["packages_per_second"] =
        benchmark::Counter(count, benchmark::Counter::kIsIterationInvariantRate);
}

void ledgerVerify(benchmark::State &state)
{
    const Document &document = documentOf(state);
    for (auto _ : state) {
        const PackageLedger ledger(document.bytes, "tag");
        if (!ledger.valid)
            state.SkipWithError("not valid");
    }
    state.counters["packages_per_second"] =
        benchmark::Counter(document.messages.size(), benchmark::Counter::kIsIterationInvariantRate);
}

int passOverFiles(const char *cursor)
{
    const auto number = [&cursor] {
        const auto value = qFromLittleEndian<quint16>(cursor);
        cursor += 2;
        return value;
    };
    const auto skipText = [&] { cursor += number(); };
    for (int types = number(); types > 0; --types)
        skipText();
    const auto count = qFromLittleEndian<quint32>(cursor);
    cursor += 4;
    int files = 0;
    std::vector<QHash<QByteArray, const unsigned char *>> packages(count);
    for (auto &package : packages) {
        cursor += 2 + 2 + 64;
        skipText();
        skipText();
        for (int left = number(); left > 0; --left) {
            const auto *digest = reinterpret_cast<const unsigned char *>(cursor);
            cursor += 28;
            const int size = number();
            package.insert(QByteArray::fromRawData(cursor, size), digest);
            cursor += size;
        }
        files += package.size();
    }
    return files;
}

void floorParse(benchmark::State &state)
{
    const Document &document = documentOf(state);
    const PackageLedger ledger(document.bytes, "tag");
    const char *payload = ledger.segments.value(".pkg").constData() + 8;
    for (auto _ : state) {
        if (passOverFiles(payload) != document.messages.size() * filesPerPackage)
            state.SkipWithError("files are missing");
    }
}

void ledgerParse(benchmark::State &state)
{
    const Document &document = documentOf(state);
    for (auto _ : state) {
        const PackageLedger ledger(document.forged, "tag");
        if (ledger.valid || ledger.issuers.size() != 1)
            state.SkipWithError("not parsed");
    }
}

class LedgerSource : public PackageSource
{
    Q_OBJECT

public:
    explicit LedgerSource(const QSharedPointer<PackageLedger> &ledger)
        : ledger(ledger)
    {
    }

    int priority() const override { return 0; }
    PackageAccessor *getAccessor() const override { return new PackageServerAccessor(nullptr, ledger); }

private:
    const QSharedPointer<PackageLedger> ledger;
};

void buildIndex(benchmark::State &state, PackageSource &source)
{
    for (auto _ : state) {
        state.PauseTiming();
        QThreadPool::globalInstance()->waitForDone(); // the clean-up that the build before has started
        auto *index = new PackageIndex;
        index->addSource(&source);
        state.ResumeTiming();
        index->build();
        state.PauseTiming();
        if (index->packageCount() != state.range(0))
            state.SkipWithError("packages are missing");
        delete index;
        state.ResumeTiming();
    }
}

void memoryIndex(benchmark::State &state)
{
    SyntheticSource source(int(state.range(0)));
    buildIndex(state, source);
}

void ledgerIndex(benchmark::State &state)
{
    LedgerSource source(QSharedPointer<PackageLedger>::create(documentOf(state).bytes, "tag"));
    buildIndex(state, source);
}

void allSizes(benchmark::internal::Benchmark *benchmark)
{
    for (const int size : {1000, 10000, 63000})
        benchmark->Arg(size);
    benchmark->Unit(benchmark::kMillisecond)
        ->MeasureProcessCPUTime()
        ->UseRealTime()
        ->Repetitions(5)
        ->ReportAggregatesOnly();
}

BENCHMARK(sodiumVerify)->Name("verify/baseline")->Apply(allSizes);
BENCHMARK(ledgerVerify)->Name("verify/ledger")->Apply(allSizes);
BENCHMARK(floorParse)->Name("parse/baseline")->Apply(allSizes);
BENCHMARK(ledgerParse)->Name("parse/ledger")->Apply(allSizes);
BENCHMARK(memoryIndex)->Name("index/baseline")->Apply(allSizes);
BENCHMARK(ledgerIndex)->Name("index/ledger")->Apply(allSizes);

} // namespace

int main(int argc, char **argv)
{
    const QTemporaryDir data;
    if (!ts::Locations::setDataLocation(QDir(data.path())) || sodium_init() < 0)
        return 1;
    const QCoreApplication application(argc, argv);
    QLocale::setDefault(QLocale(QStringLiteral("de_DE")));
    QLoggingCategory::setFilterRules(QStringLiteral("tamsel.packageserver.ledger=false"));
    // The calling thread verifies too.
    QThreadPool::globalInstance()->setMaxThreadCount(qMax(1, QThread::idealThreadCount() - 1));
    return runBenchmarks(argc, argv);
}

#include "ledgerbenchmark.moc"
