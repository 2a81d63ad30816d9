#include "ledger/cataloguecheck.h"

#include "ledger/counted.h"
#include "ledger/latin1.h"

#include <QHash>
#include <QSet>
#include <QStringList>
#include <QVariant>

#include <algorithm>
#include <set>

namespace ts::ledger {

namespace {

bool hasText(const pm::KeywordInfo &keyword, const QString &language)
{
    if (keyword.type == pm::Keyword::Literal)
        return true;
    return std::any_of(keyword.strings.begin(), keyword.strings.end(), [&](const pm::LangString &string) {
        return string.language == language && !(string.sg.isEmpty() && string.pl.isEmpty());
    });
}

bool hasFile(const CataloguePackage &package, const QString &name)
{
    return std::any_of(package.files.begin(), package.files.end(),
                       [&name](const CatalogueFile &file) { return file.name == name; });
}

void checkIds(const Catalogue &catalogue, Problems &problems)
{
    QHash<QString, QString> places;
    const auto check = [&](const QString &id, const QString &place) {
        if (places.contains(id))
            problems.addError(place,
                              QStringLiteral("the id '%1' is that of %2, too").arg(id, places.value(id)));
        places.insert(id, place);
    };
    for (const CatalogueKeyword &keyword : catalogue.keywords)
        check(keyword.info.id, keyword.origin);
    for (const CataloguePackage &package : catalogue.packages)
        check(package.info.id, package.origin);
}

void checkLinks(const Catalogue &catalogue, Problems &problems)
{
    QSet<QString> ids;
    for (const CatalogueKeyword &keyword : catalogue.keywords)
        ids.insert(keyword.info.id);
    for (const CataloguePackage &package : catalogue.packages)
        ids.insert(package.info.id);
    for (const CatalogueLink &link : catalogue.links) {
        for (const QString &end : {link.info.from, link.info.to}) {
            if (!ids.contains(end))
                problems.addError(
                    link.origin,
                    QStringLiteral("no package and no keyword of this directory has the id '%1'").arg(end));
        }
    }
}

// One string is enough for a server to offer its language. German and English are always in use: the one for
// the order of packages, the other for everybody whose language is not offered.
void checkLanguages(const Catalogue &catalogue, Problems &problems)
{
    std::set<QString> languages{QStringLiteral("de"), QStringLiteral("en")};
    for (const CatalogueKeyword &keyword : catalogue.keywords) {
        for (const pm::LangString &string : keyword.info.strings)
            languages.insert(string.language);
    }
    languages.erase(QString()); // that of literals
    for (const QString &language : languages) {
        QStringList places;
        for (const CatalogueKeyword &keyword : catalogue.keywords) {
            if (!hasText(keyword.info, language))
                places.append(keyword.origin);
        }
        if (places.isEmpty())
            continue;
        QString text =
            QStringLiteral("no text in the language '%1', in which it shows as empty").arg(language);
        if (const int others = places.size() - 1; others > 0)
            text += QStringLiteral("; the same goes for %1").arg(counted(others, latin1("other keyword")));
        problems.addWarning(places.constFirst(), text);
    }
}

// An application loads the file that a translation names for its language, and is silent if there is none.
void checkTranslations(const Catalogue &catalogue, Problems &problems)
{
    for (const CataloguePackage &package : catalogue.packages) {
        if (package.info.type.section(QLatin1Char(':'), 0, 0) != QLatin1String("translation"))
            continue;
        const QVariantMap fields = package.manifest.toVariantMap();
        for (const QVariant &value : fields) {
            const QString name = value.toString();
            if (name.endsWith(QLatin1String(".qm")) && !hasFile(package, name))
                problems.addWarning(package.origin,
                                    QStringLiteral("names '%1', but has no such file").arg(name));
        }
    }
}

} // namespace

void checkCatalogue(const Catalogue &catalogue, Problems &problems)
{
    checkIds(catalogue, problems);
    checkLinks(catalogue, problems);
    if (!problems.errors.isEmpty())
        return;
    checkLanguages(catalogue, problems);
    checkTranslations(catalogue, problems);
}

} // namespace ts::ledger
