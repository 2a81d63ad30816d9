#include "screenshotsubjects.h"

#include <TamselPackageManager/KeywordNode>
#include <TamselPackageManager/PackageIndex>
#include <TamselPackageManager/PackageNode>

#include <QHash>
#include <QJsonValue>

namespace browser {

using ts::pm::KeywordNode;
using ts::pm::PackageList;
using ts::pm::PackageNode;

namespace {

constexpr int typedLength = 4;

int requiredCount(const PackageNode &package)
{
    int count = 0;
    for (const ts::pm::PackageIndexLink &link : package.outgoingLinks())
        count += link.type == ts::pm::Requires && link.node->isPackage() ? 1 : 0;
    return count;
}

// With a picture, and with as many required packages as any.
const PackageNode *packageWorthShowing(const PackageList &packages)
{
    const PackageNode *best = nullptr;
    for (const PackageNode *package : packages) {
        const bool hasPicture = package->readManifest(QStringLiteral("picture")).isString();
        if (hasPicture && (!best || requiredCount(*package) > requiredCount(*best)))
            best = package;
    }
    return best || packages.isEmpty() ? best : packages.at(0);
}

QHash<const KeywordNode *, int> countPackages(const PackageList &packages)
{
    QHash<const KeywordNode *, int> counts;
    for (const PackageNode *package : packages) {
        const QSet<KeywordNode *> keywords = package->keywords();
        for (const KeywordNode *keyword : keywords)
            ++counts[keyword];
    }
    return counts;
}

// The most frequent one that still leaves packages out; of equals, the first in the list.
const KeywordNode *mostFrequent(const ts::pm::KeywordList &keywords,
                                const QHash<const KeywordNode *, int> &counts, int packageCount)
{
    const KeywordNode *best = nullptr;
    for (const KeywordNode *keyword : keywords) {
        const int count = counts.value(keyword);
        if (count > 0 && count < packageCount && (!best || count > counts.value(best)))
            best = keyword;
    }
    return best;
}

} // namespace

ScreenshotSubjects ScreenshotSubjects::find(const ts::pm::PackageRepository &repository)
{
    const auto index = repository.packageIndex();
    const PackageList packages = ts::pm::PackageIndex::selectPackages(index, QString(), {}, {});
    const auto counts = countPackages(packages);
    const KeywordNode *category =
        mostFrequent(ts::pm::PackageIndex::selectKeywords(
                         index, [](KeywordNode *keyword) { return keyword->isCategory(); }),
                     counts, packages.size());
    const KeywordNode *word = mostFrequent(
        ts::pm::PackageIndex::selectKeywords(
            index, [](KeywordNode *keyword) { return keyword->type() == ts::pm::Keyword::Noun; }),
        counts, packages.size());
    ScreenshotSubjects subjects;
    if (const PackageNode *package = packageWorthShowing(packages))
        subjects.packageId = package->id().toString();
    subjects.unknown = QStringLiteral("qxyzzyq");
    if (category)
        subjects.categoryId = category->id().toString();
    if (word)
        subjects.typed = word->displayString().left(typedLength).toString().toLower();
    return subjects;
}

} // namespace browser
