#include "index/packageindex.h"
#include "index/packagenode.h"
#include "presentation/packagereference.h"
#include "repository/localpackageaccessor.h"
#include "repository/localpackagesource.h"
#include "repository/packagerepository.h"
#include "storage/packageinstaller.h"

#include "support/directorycatalogue.h"
#include "support/literals.h"
#include "support/table.h"

#include <QtTest>

#include <sys/stat.h>

using namespace ts::pm;
using namespace ts::pm::test;

namespace {

constexpr int largestFile = 1048576;

// A catalogue directory that can hold more than regular files.
struct Catalogue : DirectoryCatalogue
{
    void link(const QString &target, const QString &name)
    {
        makeParent(name);
        if (!QFile::link(target, path() + QLatin1Char('/') + name))
            qFatal("Cannot link %s", qPrintable(name));
    }

    void makePipe(const QString &name)
    {
        makeParent(name);
        if (mkfifo(QFile::encodeName(path() + QLatin1Char('/') + name).constData(), 0600) != 0)
            qFatal("Cannot make %s", qPrintable(name));
    }

    void makeParent(const QString &name) { QDir(path()).mkpath(QFileInfo(name).path()); }

    std::unique_ptr<LocalPackageAccessor> read() const
    {
        auto accessor = std::make_unique<LocalPackageAccessor>(path());
        accessor->initialize();
        return accessor;
    }

    // As in "birds:owls/barn-owl", sorted.
    QStringList packages() const
    {
        const auto accessor = read();
        QStringList packages;
        for (int i = 0; i < accessor->packageCount(); ++i)
            packages.append(accessor->packageInfo(i).type + QLatin1Char('/') + accessor->packageInfo(i).id);
        packages.sort();
        return packages;
    }
};

// Blanks at the end bring a JSON object to a size that the row asks for by "(1 MiB)" or "(more)".
QByteArray contentOf(QString text)
{
    const int size = text.endsWith("(1 MiB)"_s)  ? largestFile
                     : text.endsWith("(more)"_s) ? largestFile + 1
                                                 : 0;
    text.remove("(1 MiB)"_s).remove("(more)"_s);
    const QByteArray content = text.trimmed().toUtf8();
    return size ? content.chopped(1).leftJustified(size - 1) + content.right(1) : content;
}

QString textOf(const KeywordInfo &keyword)
{
    QStringList texts{"%1 %2"_s.arg(keyword.id).arg(keyword.type)};
    for (const LangString &text : keyword.strings)
        texts.append("%1=%2/%3"_s.arg(text.language, text.sg, text.pl));
    return texts.join(", "_s);
}

QString textOf(const LinkInfo &link)
{
    return "%1 %2 %3"_s.arg(link.from).arg(link.type).arg(link.to);
}

} // namespace

class tst_LocalPackageSource : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsPackages()
    {
        Catalogue catalogue;
        catalogue.writePackage(QString(), "top"_s);
        catalogue.writePackage("birds/owls"_s, "barn-owl"_s);
        catalogue.writePackage("birds/owls"_s, "tawny-owl"_s);
        catalogue.writePackage("birds"_s, "jay"_s);
        catalogue.writePackage("birds/jay"_s, "inside a package"_s);
        catalogue.writePackage("birds/jay/level"_s, "deep inside a package"_s);
        catalogue.writePackage(".hidden"_s, "p"_s);
        catalogue.writePackage("birds"_s, ".hidden"_s);
        catalogue.writeFile("packages/empty/level/file"_s, "{}");
        catalogue.writeFile("packages/manifest.json"_s, "{}");
        catalogue.writeFile("packages/Level/Manifest.json"_s, "{}");
        QCOMPARE(catalogue.packages().join(QLatin1Char(' ')),
                 "/top birds/jay birds:owls/barn-owl birds:owls/tawny-owl"_s);
        QVERIFY(catalogue.read()->packageInfo(0).revision.isNull());
    }

    void readsManifests()
    {
        for (const Row &row : rows(R"(
            {"id":"owl"}           | {"id":"owl"}
            {"id":"owl"}(1 MiB)    | {"id":"owl"}
            {"id":"owl"}(more)     | {}
                                   | {}
            {"id":"owl"            | {}
            [{"id":"owl"}]         | {})")) {
            Catalogue catalogue;
            for (const QString &id : {"before"_s, "p"_s, "behind"_s})
                catalogue.writePackage("birds"_s, id, {{"id"_s, id}});
            catalogue.writeFile("packages/birds/p/manifest.json"_s, contentOf(row[0]));
            const auto accessor = catalogue.read();
            QCOMPARE(accessor->packageCount(), 3);
            for (int i = 0; i < 3; ++i) {
                const QString id = accessor->packageInfo(i).id;
                const QJsonObject manifest = accessor->packageManifest(i);
                const QByteArray text = QJsonDocument(manifest).toJson(QJsonDocument::Compact);
                if (id == "p"_s)
                    QCOMPARE(row.with(QString::fromUtf8(text)), row.text());
                else
                    QCOMPARE(manifest, QJsonObject({{"id"_s, id}}));
            }
        }
    }

    void namesFiles()
    {
        for (const QString &type : {"birds/owls"_s, QString()}) {
            Catalogue catalogue;
            catalogue.writePackage(type, "p"_s);
            QCOMPARE(catalogue.read()->packageFileUrl(0, "a picture.svg"_s),
                     QUrl::fromLocalFile("%1/packages/%2/p/a picture.svg"_s.arg(catalogue.path(), type)));
        }
    }

    void readsKeywords()
    {
        for (const Row &row : rows(R"(
            k.json   | {"type":"noun", "strings":{"en":[{"pl":"Alps"}, {"sg":"owl", "pl":"owls"}], "de":[{"sg":"Eule"}]}} | k 0, de=Eule/, en=/Alps, en=owl/owls
            k.json   | {"type":"noun", "strings":{"en":["owl"]}}                          | k 0, en=/
            k.json   | {"type":"name", "strings":{"en":["owl", "hooter"], "de":["Eule"]}} | k 1, de=Eule/, en=owl/, en=hooter/
            k.json   | {"type":"adjective", "strings":{"de":["rot"]}, "string":"red"}     | k 2, de=rot/
            k.json   | {"type":"category", "strings":{"fr":["oiseaux"]}}                  | k 4, fr=oiseaux/
            k.json   | {"type":"literal", "string":"42", "strings":{"en":["owl"]}}        | k 3, =42/
            k.json   | {"type":"literal"}                                                 | k 3, =/
            k.json   | {"strings":{"en":["owl"]}}                                         | k -1
            k.json   | {"type":"Name", "strings":{"en":["owl"]}}                          | k -1
            k.json   | {"type":"name"}                                                    | k 1
            k.json   | {"type":"name", "strings":{"de":"Eule", "en":[1]}}                 | k 1, en=/
            k.json   | {"type":"name"                                                     | k -1
            k.json   | [{"type":"name"}]                                                  | k -1
            k.json   | {"type":"name"}(1 MiB)                                             | k 1
            k.json   | {"type":"name"}(more)                                              | k -1
            k.y.json | {"type":"name"}                                                    | k -1
            k.txt    | {"type":"name"}                                                    |
            k/k.json | {"type":"name"}                                                    | )")) {
            Catalogue catalogue;
            catalogue.writeFile("dictionary/"_s + row[0], contentOf(row[1]));
            const auto accessor = catalogue.read();
            QCOMPARE(row.with(accessor->keywordCount() == 1 ? textOf(accessor->keywordInfo(0)) : QString()),
                     row.text());
        }
    }

    void readsLinks()
    {
        for (const Row &row : rows(R"(
            {"from":"p", "to":"k", "type":"is_a"}         | p 0 k
            {"from":"p", "to":"k", "type":"contains"}     | p 1 k
            {"from":"p", "to":"k", "type":"relates_to"}   | p 2 k
            {"from":"p", "to":"k", "type":"is_not_a"}     | p 3 k
            {"from":"p", "to":"k", "type":"is"}           | p 4 k
            {"from":"p", "to":"k", "type":"uses"}         | p 5 k
            {"from":"p", "to":"k", "type":"requires"}     | p 6 k
            {"from":"p", "to":"k", "type":"Is_a"}         | p -1 k
            {"from":"p", "to":"k"}                        | p -1 k
            {"from":"p", "type":"is", "to":1}             | p 4
            {"from":"p", "to":"k", "type":"is"            | -1
            {"from":"p", "to":"k", "type":"is"}(1 MiB)    | p 4 k
            {"from":"p", "to":"k", "type":"is"}(more)     | -1)")) {
            Catalogue catalogue;
            catalogue.writeFile("links/any name.json"_s, contentOf(row[0]));
            catalogue.writeFile("links/no link.txt"_s, contentOf(row[0]));
            const auto accessor = catalogue.read();
            QCOMPARE(accessor->linkCount(), 1);
            QCOMPARE(row.with(textOf(accessor->linkInfo(0)).trimmed()), row.text());
        }
    }

    void missingDirectoriesAreEmpty()
    {
        const Catalogue catalogue;
        for (const QString &root : {catalogue.path(), "/missing"_s}) {
            LocalPackageAccessor accessor(root);
            QCOMPARE(accessor.keywordLanguages(), QStringList({"de"_s, "en"_s})); // already known before
            accessor.initialize();
            QCOMPARE(accessor.packageCount() + accessor.keywordCount() + accessor.linkCount(), 0);
        }
    }

    void readsTheTreeForEachIndex()
    {
        Catalogue catalogue;
        LocalPackageSource source(catalogue.path());
        PackageRepository repository(PackageRepository::PersistOnRequest);
        QSignalSpy changed(&repository, &PackageRepository::packageIndexChanged);
        QCOMPARE(source.priority(), 3);
        repository.addSource(&source);
        for (const QString &id : {"p1"_s, "p2"_s}) {
            catalogue.writePackage("birds"_s, id);
            catalogue.writeKeyword("k"_s + id, "name"_s, id, id);
            catalogue.writeLink(id, "is_a"_s, "k"_s + id);
            repository.scheduleUpdate();
            QVERIFY(changed.wait());
            QCOMPARE(repository.packageIndex()->getPackage(QStringRef(&id))->sortString(), "%1#%1"_s.arg(id));
        }
    }

    void followsLinksButNotInCircles()
    {
        Catalogue catalogue;
        catalogue.writePackage("birds/owls"_s, "p"_s);
        catalogue.link(catalogue.path() + "/packages"_s, "packages/birds/up"_s);
        catalogue.link("."_s, "packages/birds/owls/self"_s);
        catalogue.link("../owls"_s, "packages/birds/owls/again"_s);
        catalogue.link("birds"_s, "packages/fowl"_s);
        catalogue.link("missing"_s, "packages/dangling"_s);
        catalogue.link("../birds/owls/p"_s, "packages/linked/q"_s);
        QCOMPARE(catalogue.packages().join(QLatin1Char(' ')), "birds:owls/p fowl:owls/p linked/q"_s);
    }

    void opensRegularFilesOnly()
    {
        Catalogue catalogue;
        catalogue.writePackage("level/manifest.json"_s, "p"_s);
        catalogue.makePipe("packages/pipe/manifest.json"_s);
        catalogue.writePackage("pipe"_s, "q"_s);
        catalogue.link("/dev/zero"_s, "packages/endless/manifest.json"_s);
        QCOMPARE(catalogue.packages().join(QLatin1Char(' ')), "level:manifest.json/p pipe/q"_s);
        for (const QString &room : {"dictionary"_s, "links"_s}) {
            catalogue.writeFile(room + "/level.json/file.json"_s, "{}");
            catalogue.makePipe(room + "/pipe.json"_s);
            catalogue.link("pipe.json"_s, room + "/to-pipe.json"_s);
            catalogue.link("/dev/zero"_s, room + "/endless.json"_s);
            catalogue.link("missing"_s, room + "/dangling.json"_s);
        }
        const auto accessor = catalogue.read();
        for (int i = 0; i < accessor->keywordCount(); ++i)
            QCOMPARE(accessor->keywordInfo(i).type, Keyword::Invalid);
        for (int i = 0; i < accessor->linkCount(); ++i)
            QCOMPARE(textOf(accessor->linkInfo(i)), " -1 "_s);
    }

    void keepsUnusualNames()
    {
        Catalogue catalogue;
        const QStringList names{"v1.2..3"_s, "Käuzchen"_s,           "鳥"_s,
                                " a b "_s,   "tab\tline\nend\x01"_s, "50%1%2"_s};
        QStringList expected;
        for (const QString &name : names) {
            catalogue.writePackage(name, name);
            catalogue.writeKeyword(name.section(QLatin1Char('.'), 0, 0), "name"_s, name, name);
            expected.append(name + QLatin1Char('/') + name);
        }
        expected.sort();
        QCOMPARE(catalogue.packages(), expected);
        const auto accessor = catalogue.read();
        for (int i = 0; i < names.size(); ++i) {
            QVERIFY(QFile::exists(accessor->packageFileUrl(i, "manifest.json"_s).toLocalFile()));
            QVERIFY(accessor->keywordInfo(i).strings.value(0).sg.startsWith(accessor->keywordInfo(i).id));
        }
    }

    void readsLargeTrees()
    {
        Catalogue catalogue;
        QStringList levels;
        for (int i = 0; i < 500; ++i)
            levels.append("a"_s);
        catalogue.writePackage(levels.join(QLatin1Char('/')), "p"_s);
        QCOMPARE(catalogue.packages(), QStringList{levels.join(QLatin1Char(':')) + "/p"_s});
        QSet<QString> expected;
        for (int i = 0; i < 20000; ++i) {
            expected.insert(QString::number(i));
            catalogue.writeFile("links/%1.json"_s.arg(i), "{\"from\":\"" + QByteArray::number(i) + "\"}");
        }
        const auto accessor = catalogue.read();
        QSet<QString> found;
        for (int i = 0; i < accessor->linkCount(); ++i)
            found.insert(accessor->linkInfo(i).from);
        QCOMPARE(found, expected);
    }

    void survivesATreeThatVanishes()
    {
        auto catalogue = std::make_unique<Catalogue>();
        catalogue->writePackage("birds"_s, "p"_s, {{"title"_s, "owl"_s}});
        catalogue->writeKeyword("k"_s, "name"_s, "Eule"_s, "owl"_s);
        catalogue->writeLink("p"_s, "is_a"_s, "k"_s);
        const auto accessor = catalogue->read();
        catalogue.reset();
        QCOMPARE(accessor->packageManifest(0).value("title"_s).toString(), "owl"_s);
        QCOMPARE(textOf(accessor->keywordInfo(0)), "k -1"_s);
        QCOMPARE(textOf(accessor->linkInfo(0)), " -1 "_s);
        const std::unique_ptr<PackageInstaller> installer(
            accessor->packageInstaller(0, InstallLocation::createRoot()));
        QTRY_COMPARE(installer->status(), PackageInstaller::Succeeded);
    }

    void installsCyclesOfRequirements()
    {
        Catalogue catalogue;
        for (const Row &row : rows("p1|p2\n p2|p3\n p3|p1\n p1|p1")) {
            catalogue.writePackage("birds/owls"_s, row[0]);
            catalogue.writeFile("packages/birds/owls/%1/picture"_s.arg(row[0]), "owl");
            catalogue.writeLink(row[0], "requires"_s, row[1]);
        }
        LocalPackageSource source(catalogue.path());
        PackageRepository repository(PackageRepository::PersistOnRequest);
        repository.addSource(&source);
        const PackageReference *reference = repository.packageReference("p2"_s);
        QTRY_COMPARE(reference->status(), PackageReference::Installed);
        for (const QString &id : {"p1"_s, "p2"_s, "p3"_s}) {
            const PackageNode *node = reference->packageIndex()->getPackage(QStringRef(&id));
            QCOMPARE(QFile::symLinkTarget(node->installLocation().pathToFile("picture"_s)),
                     "%1/packages/birds/owls/%2/picture"_s.arg(catalogue.path(), id));
        }
    }
};

QTEST_GUILESS_MAIN(tst_LocalPackageSource)
#include "tst_localpackagesource.moc"
