#include "integration/childprocess.h"
#include "qml/scene.h"
#include "support/literals.h"
#include "support/table.h"

#include <QQuickItem>
#include <QQuickWindow>
#include <QtTest>

using namespace ts::pm::test;

class tst_Examples : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // The first one holds here, too, the other only in the program that is started.
    void initTestCase()
    {
        qputenv("QT_FATAL_WARNINGS", "1");
        qputenv("QT_LOGGING_RULES", "tamsel.*.info=false;tamsel.package.index.debug=true");
    }

    // The texts that an example shows from top to bottom, and those after a click in its corner: to the order
    // of years, the last title has to go up to the first row.
    void showsWhatItShould()
    {
        DirectoryCatalogue catalogue;
        const QJsonArray size{64, 48};
        catalogue.writePackage(
            "plant/tree"_s, "oak"_s,
            {{"title"_s, "Oak"_s}, {"year"_s, 1700}, {"size"_s, size}, {"picture"_s, "x"_s}});
        catalogue.writeFile("packages/plant/tree/oak/x"_s, "<svg xmlns='http://www.w3.org/2000/svg'/>");
        catalogue.writePackage("plant/tree"_s, "beech"_s, {{"title"_s, "Beech"_s}, {"year"_s, 1753}});
        catalogue.writePackage("plant"_s, "fern"_s, {{"title"_s, "Fern"_s}, {"year"_s, 1900}});
        catalogue.writeKeyword("tree"_s, "category"_s, "Baum"_s, "Trees"_s);
        catalogue.writeKeyword("oakwood"_s, "noun"_s, "Eichenholz"_s, "Oakwood"_s);
        catalogue.writeLink("oak"_s, "is_a"_s, "tree"_s);
        catalogue.writeLink("beech"_s, "is_a"_s, "tree"_s);
        for (const Row &row : rows(R"(
            readme/main.qml           | Oak
            embedding/application.qml | Fern, Beech, Oak
            embedding/packages.qml    | Beech, Oak
            embedding/keywords.qml    | Trees, <b>Oa</b>kwood, Trees
            embedding/details.qml     | Oak, installed
            embedding/order.qml       | Sort by year, Beech, Fern, Oak; Sort by year, Oak, Beech, Fern)")) {
            const QFileInfo file(EXAMPLES "/"_s + row[0]);
            QVERIFY(QDir::setCurrent(file.path()));
            Scene scene(R"(
                property var catalogue: provider
                Loader { id: example }
                function items(item) { return [item].concat(...Array.from(item.children, items)) }
                function top(item) { return item.mapToItem(null, 0, 0).y }
                function texts() {
                    return items(example.item.contentItem || example.item).filter(item => item.visible && item.text)
                        .sort((a, b) => top(a) - top(b)).map(item => item.text).join(", ")
                })");
            QQuickWindow window;
            window.resize(640, 480);
            qobject_cast<QQuickItem *>(scene.root.data())->setParentItem(window.contentItem());
            window.show();
            scene.use(catalogue);
            scene.run("example.source = 'file:%1'"_s.arg(file.filePath()));
            const QStringList texts = row[1].split("; "_s);
            QTRY_COMPARE(row[0] + scene.text("texts()"_s), row[0] + texts.first());
            if (texts.size() > 1)
                QTest::mouseClick(&window, Qt::LeftButton, Qt::NoModifier, QPoint(2, 2));
            QTRY_COMPARE(row[0] + scene.text("texts()"_s), row[0] + texts.last());
        }
    }

    // Its log tells when it has built its index; nothing else may be in it.
    void embeddingProgramRuns()
    {
        ChildProcess example;
        example.setProcessChannelMode(QProcess::MergedChannels);
        example.setWorkingDirectory(EXAMPLES "/embedding"_s);
        example.start(QStringLiteral(EMBEDDING_PROGRAM), QStringList());
        const QString line = example.nextLine();
        QVERIFY2(line.contains("Package index build took"_s), qPrintable(line));
        example.terminate();
        QVERIFY(example.waitForFinished());
        QCOMPARE(example.readAll(), QByteArray());
    }
};

QTEST_MAIN(tst_Examples)
#include "tst_examples.moc"
