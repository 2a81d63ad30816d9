// Reading the data file of a listing, on one thread, against the floor: QJsonDocument::fromJson() of the same
// bytes, which are in memory already. Each package has three links, a row each, so that the largest view just
// stays within what is read of one.

#include "database/couchdbpackageaccessor.h"
#include "database/documentpackageaccessor.h"
#include "storage/filestore.h"
#include "support/ratioreporter.h"

#include <Tamsel/Locations>

#include <QCoreApplication>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QTemporaryDir>

namespace {

using namespace ts::pm;
using namespace ts::pm::bench;

constexpr int linksOfPackage = 3;

QJsonObject document(int number)
{
    const QString name = QStringLiteral("trail %1").arg(number);
    return {
        {QStringLiteral("_id"), QStringLiteral("package-%1").arg(number)},
        {QStringLiteral("_rev"), QStringLiteral("2-7051cbe5c8faecd085a3fa619e6e6337")},
        {QStringLiteral("packageType"), QStringLiteral("guide:hike")},
        {QStringLiteral("manifest"),
         QJsonObject{{QStringLiteral("title"),
                      QJsonObject{{QStringLiteral("de"), name}, {QStringLiteral("en"), name}}},
                     {QStringLiteral("length"), number},
                     {QStringLiteral("text"), QString(200, QLatin1Char('x'))}}},
        {QStringLiteral("_attachments"),
         QJsonObject{{QStringLiteral("track.gpx"),
                      QJsonObject{{QStringLiteral("digest"), QStringLiteral("md5-rL0Y20zC+Fzt72VPzMSk2A==")},
                                  {QStringLiteral("length"), number}}}}}};
}

QJsonObject row(const QString &kind, const QJsonObject &value)
{
    return {{QStringLiteral("key"), QJsonArray{kind}}, {QStringLiteral("value"), value}};
}

QJsonArray viewRows(int packages)
{
    QJsonArray rows;
    for (int i = 0; i < packages; ++i) {
        rows.append(row(QStringLiteral("package"), document(i)));
        for (int link = 0; link < linksOfPackage; ++link) {
            rows.append(
                row(QStringLiteral("link"), {{QStringLiteral("from"), QString::number(i)},
                                             {QStringLiteral("to"), QString::number(link)},
                                             {QStringLiteral("linkType"), QStringLiteral("contains")}}));
        }
    }
    return rows;
}

QJsonArray documentRows(int packages)
{
    QJsonArray rows;
    for (int i = 0; i < packages; ++i)
        rows.append(QJsonObject{{QStringLiteral("doc"), document(i)}});
    return rows;
}

/** A data file with the rows that \a makeRows gives, as compact JSON. */
class DataFile
{
public:
    DataFile(int packages, QJsonArray (*makeRows)(int))
        : bytes(QJsonDocument(QJsonObject{{QStringLiteral("rows"), makeRows(packages)}})
                    .toJson(QJsonDocument::Compact))
    {
        QFile file(listing().path);
        isWritten = file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
    }

    ListingFile listing() const { return {directory.filePath(QStringLiteral("listing")), std::nullopt}; }

    const QByteArray bytes;
    bool isWritten = false;

private:
    const QTemporaryDir directory;
};

void parse(benchmark::State &state, QJsonArray (*makeRows)(int))
{
    const DataFile file(int(state.range(0)), makeRows);
    for (auto _ : state) {
        QJsonDocument parsed = QJsonDocument::fromJson(file.bytes);
        benchmark::DoNotOptimize(parsed);
    }
    state.counters["bytes"] = double(file.bytes.size());
}

template<typename MakeAccessor>
void initialize(benchmark::State &state, QJsonArray (*makeRows)(int), const MakeAccessor &makeAccessor)
{
    const DataFile file(int(state.range(0)), makeRows);
    for (auto _ : state) {
        auto accessor = makeAccessor(file.listing());
        accessor->initialize();
        if (!file.isWritten || accessor->packageCount() != state.range(0))
            state.SkipWithError("not all packages were read");
    }
}

void parseView(benchmark::State &state)
{
    parse(state, viewRows);
}

void initializeView(benchmark::State &state)
{
    initialize(state, viewRows, [](const ListingFile &listing) {
        return std::make_unique<CouchDBPackageAccessor>(QUrl(), listing, nullptr);
    });
}

void parseDocuments(benchmark::State &state)
{
    parse(state, documentRows);
}

void initializeDocuments(benchmark::State &state)
{
    initialize(state, documentRows, [](const ListingFile &listing) {
        return std::make_unique<DocumentPackageAccessor>(QString(), listing);
    });
}

void allSizes(benchmark::internal::Benchmark *benchmark)
{
    for (const int size : {100, 1000, 4000})
        benchmark->Arg(size);
    benchmark->Unit(benchmark::kMillisecond)->Repetitions(5)->ReportAggregatesOnly();
}

BENCHMARK(parseView)->Name("view/baseline")->Apply(allSizes);
BENCHMARK(initializeView)->Name("view/initialize")->Apply(allSizes);
BENCHMARK(parseDocuments)->Name("documents/baseline")->Apply(allSizes);
BENCHMARK(initializeDocuments)->Name("documents/initialize")->Apply(allSizes);

} // namespace

int main(int argc, char **argv)
{
    const QTemporaryDir data;
    if (!ts::Locations::setDataLocation(QDir(data.path())))
        return 1;
    const QCoreApplication application(argc, argv);
    const auto store = FileStore::defaultStore(); // or each accessor would make it anew
    return runBenchmarks(argc, argv);
}
