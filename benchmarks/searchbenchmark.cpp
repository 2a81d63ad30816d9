// Searches in an index against plain loops that do the least that can be done:
// - a keyword search, and a filter by category, against a loop over the links of all packages that tests a
//   flag computed once for each keyword;
// - suggestions against a scan of all strings.

#include "support/ratioreporter.h"
#include "support/syntheticcatalogue.h"

#include <Tamsel/Locations>
#include <TamselPackageManager/HasKeyword>
#include <TamselPackageManager/KeywordNode>
#include <TamselPackageManager/MatchesKeywordSearch>
#include <TamselPackageManager/PackageNode>

#include <QCoreApplication>
#include <QDir>
#include <QHash>
#include <QLocale>
#include <QSet>
#include <QTemporaryDir>

#include <algorithm>

namespace {

using namespace ts::pm;
using namespace ts::pm::bench;

const QString searchText = QStringLiteral("bra");
const QString categoryId = QStringLiteral("keyword-8");

using KeywordTest = std::function<bool(const KeywordNode *)>;

int countByFlags(const PackageList &packages, const KeywordList &keywords, const KeywordTest &test)
{
    QHash<const PackageIndexNode *, int> numbers;
    QVector<char> flags;
    for (const KeywordNode *keyword : keywords) {
        numbers.insert(keyword, flags.size());
        flags.append(test(keyword));
    }
    int found = 0;
    for (const PackageNode *package : packages) {
        for (const PackageIndexLink &link : package->outgoingLinks()) {
            if (link.node->isKeyword() && flags.at(link.node->indexPosition())) {
                ++found;
                break;
            }
        }
    }
    return found;
}

void measureFloor(benchmark::State &state, const KeywordTest &test)
{
    const auto index = syntheticIndex(int(state.range(0)));
    const PackageList packages = PackageIndex::selectPackages(index, {}, {}, {});
    const KeywordList keywords = PackageIndex::selectKeywords(index, {});
    int found = 0;
    for (auto _ : state)
        found = countByFlags(packages, keywords, test);
    state.counters["found"] = found;
}

void measureFilter(benchmark::State &state, const PackageMatcher &matcher)
{
    const auto index = syntheticIndex(int(state.range(0)));
    int found = 0;
    for (auto _ : state)
        found = PackageIndex::selectPackages(index, {}, matcher.matchFunction(), {}).size();
    state.counters["found"] = found;
}

void searchFloor(benchmark::State &state)
{
    measureFloor(state,
                 [](const KeywordNode *keyword) { return keyword->match(QStringRef(&searchText)) > 0; });
}

void search(benchmark::State &state)
{
    MatchesKeywordSearch matcher;
    matcher.setSearchString(searchText);
    measureFilter(state, matcher);
}

void categoryFloor(benchmark::State &state)
{
    measureFloor(state, [](const KeywordNode *keyword) { return keyword->id() == categoryId; });
}

void category(benchmark::State &state)
{
    HasKeyword matcher;
    matcher.setKeywordId(categoryId);
    measureFilter(state, matcher);
}

QStringList scanStrings(const QVector<QString> &strings)
{
    QSet<QString> found;
    for (const QString &string : strings) {
        if (string.contains(searchText, Qt::CaseInsensitive))
            found.insert(string);
    }
    QStringList sorted = found.values();
    std::sort(sorted.begin(), sorted.end());
    return sorted;
}

void suggestionsFloor(benchmark::State &state)
{
    QVector<QString> strings;
    for (const KeywordInfo &keyword : syntheticCatalogue(int(state.range(0))).keywords) {
        for (const LangString &string : keyword.strings) {
            if (string.language == QLatin1String("de"))
                strings << string.sg << string.pl;
        }
    }
    int found = 0;
    for (auto _ : state)
        found = scanStrings(strings).size();
    state.counters["found"] = found;
}

void suggestions(benchmark::State &state)
{
    const auto index = syntheticIndex(int(state.range(0)));
    int found = 0;
    for (auto _ : state) {
        QSet<QString> words;
        for (const KeywordNode *keyword : PackageIndex::selectKeywords(index, {})) {
            for (const QStringRef &word : keyword->suggestions(QStringRef(&searchText)))
                words.insert(word.toString());
        }
        QStringList sorted = words.values();
        std::sort(sorted.begin(), sorted.end());
        found = sorted.size();
    }
    state.counters["found"] = found;
}

// The list of categories of a type, against a look at the type of every package.
void categoriesFloor(benchmark::State &state)
{
    const auto index = syntheticIndex(int(state.range(0)));
    const PackageList packages = PackageIndex::selectPackages(index, {}, {}, {});
    const QString type = QStringLiteral("guide");
    for (auto _ : state) {
        int found = 0;
        for (const PackageNode *package : packages)
            found += package->hasType(QStringRef(&type));
        benchmark::DoNotOptimize(found);
    }
}

void categories(benchmark::State &state)
{
    const auto index = syntheticIndex(int(state.range(0)));
    const QString type = QStringLiteral("guide");
    for (auto _ : state) {
        KeywordList list = PackageIndex::selectKeywords(index, [&](KeywordNode *keyword) {
            return keyword->isCategory() && keyword->linksToPackageType(QStringRef(&type));
        });
        benchmark::DoNotOptimize(list);
    }
}

void allSizes(benchmark::internal::Benchmark *benchmark)
{
    for (const int size : sizes)
        benchmark->Arg(size);
    benchmark->Unit(benchmark::kMillisecond)->Repetitions(5)->ReportAggregatesOnly();
}

BENCHMARK(searchFloor)->Name("search/baseline")->Apply(allSizes);
BENCHMARK(search)->Name("search/selectPackages")->Apply(allSizes);
BENCHMARK(categoryFloor)->Name("category/baseline")->Apply(allSizes);
BENCHMARK(category)->Name("category/selectPackages")->Apply(allSizes);
BENCHMARK(suggestionsFloor)->Name("suggestions/baseline")->Apply(allSizes);
BENCHMARK(suggestions)->Name("suggestions/keywords")->Apply(allSizes);
BENCHMARK(categoriesFloor)->Name("categories/baseline")->Apply(allSizes);
BENCHMARK(categories)->Name("categories/selectKeywords")->Apply(allSizes);

} // namespace

int main(int argc, char **argv)
{
    static const QTemporaryDir data; // the locks of static indexes lie there
    if (!ts::Locations::setDataLocation(QDir(data.path())))
        return 1;
    const QCoreApplication application(argc, argv);
    QLocale::setDefault(QLocale(QStringLiteral("de_DE")));
    return runBenchmarks(argc, argv);
}
