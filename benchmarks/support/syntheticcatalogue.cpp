#include "support/syntheticcatalogue.h"

#include <TamselPackageManager/InstallLocation>
#include <TamselPackageManager/PackageInstaller>

#include <QJsonObject>

#include <map>
#include <memory>
#include <random>

namespace ts::pm::bench {

namespace {

constexpr unsigned seed = 20260501;
constexpr int packagesPerKeyword = 100;
constexpr int categoryShare = 4; // one keyword of so many is a category
constexpr int categoriesInCategory = 8;

/** Draws the same sequence on every platform, unlike the standard distributions. */
class Dice
{
public:
    int below(int bound) { return int(engine() % unsigned(bound)); }

    QString word(int syllables)
    {
        static const char *const consonants[] = {"b", "br", "d", "f", "g",   "gr", "h", "k",  "l", "m",
                                                 "n", "p",  "r", "s", "sch", "st", "t", "tr", "w", "z"};
        static const char *const vowels[] = {"a", "e", "i", "o", "u", "ei", "au", "ie"};
        QString word;
        for (int i = 0; i < syllables; ++i) {
            word += QLatin1String(consonants[below(20)]);
            word += QLatin1String(vowels[below(8)]);
        }
        word[0] = word.at(0).toUpper();
        return word;
    }

private:
    std::mt19937 engine{seed};
};

class SyntheticAccessor : public PackageAccessor
{
public:
    explicit SyntheticAccessor(const SyntheticCatalogue &catalogue)
        : catalogue(catalogue)
    {
    }

    void initialize() override {}
    int packageCount() const override { return catalogue.packages.size(); }
    PackageInfo packageInfo(int index) const override { return catalogue.packages.at(index); }
    QJsonObject packageManifest(int index) const override
    {
        return {{QStringLiteral("title"), catalogue.packages.at(index).id}};
    }
    QUrl packageFileUrl(int, const QString &) const override { return QUrl(); }
    PackageInstaller *packageInstaller(int, const InstallLocation &) const override { return nullptr; }
    int keywordCount() const override { return catalogue.keywords.size(); }
    KeywordInfo keywordInfo(int index) const override { return catalogue.keywords.at(index); }
    QStringList keywordLanguages() const override { return {QStringLiteral("de"), QStringLiteral("en")}; }
    int linkCount() const override { return catalogue.links.size(); }
    LinkInfo linkInfo(int index) const override { return catalogue.links.at(index); }

private:
    const SyntheticCatalogue &catalogue;
};

Keyword::Type keywordType(int number)
{
    static const Keyword::Type types[] = {Keyword::Category, Keyword::Noun, Keyword::Name,
                                          Keyword::Adjective};
    return types[number % categoryShare];
}

QString keywordId(int number)
{
    return QStringLiteral("keyword-%1").arg(number);
}

// Links are records of their own: what they name is not where the named one's record lies.
QString copyOf(const QString &id)
{
    return QString(id.constData(), id.size());
}

} // namespace

SyntheticCatalogue::SyntheticCatalogue(int packageCount)
{
    static const char *const types[] = {"map",          "map:base",   "map:region", "guide:bird",
                                        "guide:tree",   "guide:herb", "trail",      "trail:bike",
                                        "trail:hiking", "sound:bird", "sound:frog", "video"};
    Dice dice;
    const int keywordCount = packageCount / packagesPerKeyword;
    for (int i = 0; i < keywordCount; ++i) {
        const Keyword::Type type = keywordType(i);
        const QString plural = type == Keyword::Noun ? dice.word(4) : QString();
        keywords.append(
            {keywordId(i),
             type,
             {{QStringLiteral("de"), dice.word(3), plural}, {QStringLiteral("en"), dice.word(3), plural}}});
        // Categories form a hierarchy, and every other keyword stands below one of them.
        const int category = i / categoryShare;
        if (i % categoryShare != 0)
            links.append({IsA, keywordId(i), keywordId(category * categoryShare)});
        else if (category > 0)
            links.append(
                {IsA, keywordId(i), keywordId((category - 1) / categoriesInCategory * categoryShare)});
    }
    const auto category = [&] { return keywordId(dice.below(keywordCount / categoryShare) * categoryShare); };
    const auto keyword = [&] { return keywordId(dice.below(keywordCount)); };
    for (int i = 0; i < packageCount; ++i) {
        const QString id = QStringLiteral("%1-%2").arg(dice.word(2).toLower()).arg(i);
        packages.append({id, QString::fromLatin1(types[dice.below(12)]), QString()});
        links.append({IsA, id, category()});
        links.append({Contains, id, keyword()});
        links.append({Contains, id, keyword()});
        links.append({Is, id, keyword()});
        links.append({RelatesTo, id, keyword()});
        links.append({Uses, id, keyword()});
        links.append({Requires, id, copyOf(packages.at(dice.below(i + 1)).id)});
    }
}

const SyntheticCatalogue &syntheticCatalogue(int packageCount)
{
    static std::map<int, std::unique_ptr<SyntheticCatalogue>> catalogues;
    auto &catalogue = catalogues[packageCount];
    if (!catalogue)
        catalogue = std::make_unique<SyntheticCatalogue>(packageCount);
    return *catalogue;
}

SyntheticSource::SyntheticSource(int packageCount)
    : catalogue(syntheticCatalogue(packageCount))
{
}

int SyntheticSource::priority() const
{
    return 0;
}

PackageAccessor *SyntheticSource::getAccessor() const
{
    return new SyntheticAccessor(catalogue);
}

QSharedPointer<PackageIndex> syntheticIndex(int packageCount)
{
    static std::map<int, QSharedPointer<PackageIndex>> indexes;
    QSharedPointer<PackageIndex> &index = indexes[packageCount];
    if (!index) {
        SyntheticSource source(packageCount);
        index = QSharedPointer<PackageIndex>::create();
        index->addSource(&source);
        index->build();
    }
    return index;
}

} // namespace ts::pm::bench
