#include "repository/localpackageaccessor.h"
#include "repository/localpackagesource.h"

#include "support/accessors.h"
#include "support/directorycatalogue.h"
#include "support/literals.h"
#include "support/table.h"

#include <QtTest>

#include <sys/stat.h>

using namespace ts::pm;
using namespace ts::pm::test;

namespace {

// A catalogue directory that can hold more than regular files.
struct Catalogue : DirectoryCatalogue
{
    QString makePlace(const QString &name) const
    {
        QDir(path()).mkpath(QFileInfo(name).path());
        return path() + QLatin1Char('/') + name;
    }

    void link(const QString &target, const QString &name) const
    {
        if (!QFile::link(target, makePlace(name)))
            qFatal("Cannot link %s", qPrintable(name));
    }

    void makePipe(const QString &name) const
    {
        if (mkfifo(QFile::encodeName(makePlace(name)).constData(), 0600) != 0)
            qFatal("Cannot make %s", qPrintable(name));
    }

    // Sorted; of packages whose files are where their URLs lead. A relative path means what it did at first.
    QStringList records() const
    {
        LocalPackageAccessor accessor(QDir::current().relativeFilePath(path()));
        QDir::setCurrent("/"_s);
        accessor.initialize();
        QStringList records = recordsOf(accessor);
        for (int i = accessor.packageCount() - 1; i >= 0; --i) {
            if (!QFile::exists(accessor.packageFileUrl(i, "manifest.json"_s).toLocalFile()))
                records.removeAt(i);
        }
        records.sort();
        QDir::setCurrent(QDir::tempPath());
        return records;
    }
};

// Blanks at the end bring a JSON object to a size that the row asks for by "(1 MiB)" or "(more)".
QByteArray contentOf(QString text)
{
    const int size = text.endsWith("(1 MiB)"_s) ? 1048576 : text.endsWith("(more)"_s) ? 1048577 : 0;
    const QByteArray content = text.remove(QRegularExpression("\\((1 MiB|more)\\)$"_s)).trimmed().toUtf8();
    return size ? content.chopped(1).leftJustified(size - 1) + content.right(1) : content;
}

} // namespace

class tst_LocalPackageSource : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsPackages()
    {
        Catalogue catalogue;
        QStringList expected{"/top {}"_s, "birds/jay {}"_s, "birds:owls/barn-owl {}"_s};
        for (const QString &name :
             {"v1.2..3"_s, "Käuzchen"_s, "鳥"_s, " a b "_s, "a\tb\nc\x01"_s, "%1%2"_s}) {
            const QString keyword = name.section(QLatin1Char('.'), 0, 0);
            catalogue.writePackage(name, name);
            catalogue.writeKeyword(keyword, "name"_s, name, name);
            expected += {"%1/%1 {}"_s.arg(name), "%1 1, de=%2/, en=%2/"_s.arg(keyword, name)};
        }
        QDir::setSearchPaths("etc"_s, {catalogue.path() + "/packages"_s, catalogue.path() + "/dictionary"_s});
        for (const QString &name : {":jay"_s, "etc:Käuzchen"_s}) { // paths elsewhere, to Qt
            catalogue.writePackage("birds"_s, name);
            catalogue.writeKeyword(name, "name"_s, name, name);
            expected += {"birds/%1 {}"_s.arg(name), "%1 1, de=%1/, en=%1/"_s.arg(name)};
        }
        catalogue.writePackage(QString(), "top"_s);
        catalogue.writePackage("birds/owls"_s, "barn-owl"_s);
        catalogue.writePackage("birds"_s, "jay"_s);
        catalogue.writePackage("birds/jay"_s, "inside a package"_s);
        catalogue.writePackage(".hidden"_s, "p"_s);
        catalogue.writePackage("birds"_s, ".hidden"_s);
        for (const QString &file : {"empty/level/file"_s, "manifest.json"_s, "Level/Manifest.json"_s})
            catalogue.writeFile("packages/"_s + file, "{}");
        expected.sort();
        QCOMPARE(catalogue.records(), expected);
    }

    void readsFiles()
    {
        // file | content | what comes of it: a manifest, the number of a type, texts
        for (const Row &row : rows(R"(
            packages/birds/p/manifest.json | {"id":"owl"}                                 | birds/p {"id":"owl"}
            packages/birds/p/manifest.json | {"id":"owl"}(1 MiB)                          | birds/p {"id":"owl"}
            packages/birds/p/manifest.json | {"id":"owl"}(more)                           | birds/p {}
            packages/birds/p/manifest.json | {"id":"owl"                                  | birds/p {}
            dictionary/k.json | {"type":"noun", "strings":{"en":[{"pl":"Alps"}, {"sg":"owl", "pl":"owls"}], "de":[{"sg":"Eule"}]}} | k 0, de=Eule/, en=/Alps, en=owl/owls
            dictionary/k.json | {"type":"name", "strings":{"en":["owl", "hooter"], "de":["Eule"]}} | k 1, de=Eule/, en=owl/, en=hooter/
            dictionary/k.json | {"type":"adjective", "strings":{"de":["rot"]}, "string":"red"}     | k 2, de=rot/
            dictionary/k.json | {"type":"category", "strings":{"fr":["oiseaux"]}}                  | k 4, fr=oiseaux/
            dictionary/k.json | {"type":"literal", "string":"42", "strings":{"en":["owl"]}}        | k 3, =42/
            dictionary/k.json | {"strings":{"en":["owl"]}}                                         | k -1
            dictionary/k.json | {"type":"name", "strings":{"de":"Eule", "en":[1]}}                 | k 1, en=/
            dictionary/k.json | {"type":"name"                                                     | k -1
            dictionary/k.json | {"type":"name"}(more)                                              | k -1
            dictionary/k.y.json | {"type":"name"}                                                  | k -1
            dictionary/k.txt    | {"type":"name"}                                                  |
            links/any name.json | {"from":"p", "to":"k", "type":"is_a"}         | p 0 k
            links/any name.json | {"from":"p", "to":"k", "type":"is"}           | p 4 k
            links/any name.json | {"from":"p", "to":"k", "type":"Is_a"}         | p -1 k
            links/any name.json | {"from":"p", "type":"is", "to":1}             | p 4
            links/any name.json | {"from":"p", "to":"k", "type":"is"            | -1
            links/any name.json | {"from":"p", "to":"k", "type":"is"}(more)     | -1)")) {
            Catalogue catalogue;
            for (const QString &id : {"before"_s, "zebra"_s})
                catalogue.writePackage("birds"_s, id, {{"id"_s, id}});
            catalogue.writeFile(row[0], contentOf(row[1]));
            QStringList records = catalogue.records();
            QCOMPARE(records.removeAll(R"(birds/before {"id":"before"})"_s), 1);
            QCOMPARE(records.removeAll(R"(birds/zebra {"id":"zebra"})"_s), 1);
            QCOMPARE(row.with(records.join("; "_s)), row.text());
        }
    }

    void missingDirectoriesAreEmpty()
    {
        LocalPackageAccessor accessor("/missing"_s);
        QCOMPARE(accessor.keywordLanguages(), QStringList({"de"_s, "en"_s})); // already known before
        accessor.initialize();
        QCOMPARE(accessor.packageCount() + accessor.keywordCount() + accessor.linkCount(), 0);
        QCOMPARE(LocalPackageSource("/missing"_s).priority(), 3);
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
        QCOMPARE(catalogue.records(),
                 QStringList({"birds:owls/p {}"_s, "fowl:owls/p {}"_s, "linked/q {}"_s}));
    }

    void readsLargeTrees()
    {
        Catalogue catalogue;
        const QString levels = "a/"_s.repeated(500).chopped(1);
        catalogue.writePackage(levels, "p"_s);
        for (int i = 0; i < 20000; ++i)
            catalogue.writeLink(QString::number(i), "is_a"_s, "k"_s);
        const QStringList records = catalogue.records();
        QCOMPARE(records.size(), 20001);
        QVERIFY(records.contains(QString(levels).replace(QLatin1Char('/'), QLatin1Char(':')) + "/p {}"_s));
    }

    void survivesATreeThatVanishes()
    {
        auto catalogue = std::make_unique<Catalogue>();
        catalogue->writePackage("birds"_s, "p"_s, {{"title"_s, "owl"_s}});
        LocalPackageAccessor accessor(catalogue->path());
        accessor.initialize();
        catalogue.reset();
        QCOMPARE(accessor.packageManifest(0).value("title"_s).toString(), "owl"_s);
    }

    void opensRegularFilesOnly()
    {
        Catalogue catalogue;
        catalogue.writePackage("level/manifest.json"_s, "p"_s);
        catalogue.makePipe("packages/pipe/manifest.json"_s);
        catalogue.writePackage("pipe"_s, "q"_s);
        catalogue.link("/dev/zero"_s, "packages/endless/manifest.json"_s);
        for (const QString &room : {"dictionary"_s, "links"_s}) {
            catalogue.writeFile(room + "/level.json/file.json"_s, "{}");
            catalogue.makePipe(room + "/pipe.json"_s);
            catalogue.link("pipe.json"_s, room + "/to-pipe.json"_s);
            catalogue.link("/dev/zero"_s, room + "/endless.json"_s);
            catalogue.link("missing"_s, room + "/dangling.json"_s);
        }
        const QStringList readable = catalogue.records().filter(QRegularExpression("(?<!-1)$"_s));
        QCOMPARE(readable, QStringList({"level:manifest.json/p {}"_s, "pipe/q {}"_s}));
    }
};

QTEST_GUILESS_MAIN(tst_LocalPackageSource)
#include "tst_localpackagesource.moc"
