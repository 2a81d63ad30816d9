#include "support/directorycatalogue.h"
#include "support/literals.h"
#include "support/table.h"

#include <QDir>
#include <QJsonArray>
#include <QProcess>
#include <QQmlComponent>
#include <QQmlContext>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QtTest>

using namespace ts::pm::test;

namespace {

QStringList problems;

void noteProblems(QtMsgType type, const QMessageLogContext &, const QString &text)
{
    if (type != QtDebugMsg && type != QtInfoMsg)
        problems.append(text);
}

class ProblemCapture
{
public:
    ProblemCapture() { problems.clear(); }
    ~ProblemCapture() { qInstallMessageHandler(before); }

private:
    Q_DISABLE_COPY(ProblemCapture)
    const QtMessageHandler before = qInstallMessageHandler(noteProblems);
};

/** An example in a window, with a "catalogue" that it may ask for if there is a path for it. */
class Example
{
public:
    Example(const QString &file, const QString &cataloguePath)
    {
        QQmlComponent component(&engine);
        component.setData(
            "import Tamsel.PackageManager 1.0; PackageProvider { LocalSource { objectName: 'local' } }",
            QUrl());
        provider.reset(component.create());
        if (!provider)
            qFatal("%s", qPrintable(component.errorString()));
        provider->findChild<QObject *>("local"_s)->setProperty("path", cataloguePath);
        if (!cataloguePath.isEmpty())
            engine.rootContext()->setContextProperty("catalogue"_s, provider.data());
        root.reset(
            QQmlComponent(&engine, QUrl::fromLocalFile(QDir::current().absoluteFilePath(file))).create());
        if (auto *item = qobject_cast<QQuickItem *>(root.data())) {
            window.resize(640, 480);
            item->setParentItem(window.contentItem());
            window.show();
        }
    }

    void tapTopLeft() { QTest::mouseClick(&window, Qt::LeftButton, Qt::NoModifier, QPoint(2, 2)); }

    // That can be seen, from top to bottom.
    QString texts() const
    {
        const auto *ownWindow = qobject_cast<QQuickWindow *>(root.data());
        const QQuickItem *const content = ownWindow ? ownWindow->contentItem() : window.contentItem();
        QMap<qreal, QString> texts;
        QVector<const QQuickItem *> items{content};
        for (int i = 0; i < items.size(); ++i) {
            const QString text = items.at(i)->property("text").toString();
            if (items.at(i)->isVisible() && !text.isEmpty())
                texts.insert(items.at(i)->mapToItem(content, {}).y(), text);
            for (const QQuickItem *child : items.at(i)->childItems())
                items.append(child);
        }
        return QStringList(texts.values()).join(", "_s);
    }

private:
    QQuickWindow window;
    QQmlEngine engine;
    QScopedPointer<QObject> provider;
    QScopedPointer<QObject> root;
};

} // namespace

class tst_Examples : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        catalogue.writePackage("plant/tree"_s, "oak"_s,
                               {{"title"_s, "Oak"_s},
                                {"year"_s, 1700},
                                {"size"_s, QJsonArray{64, 48}},
                                {"picture"_s, "oak.svg"_s}});
        catalogue.writeFile("packages/plant/tree/oak/oak.svg"_s,
                            "<svg xmlns='http://www.w3.org/2000/svg' width='4' height='3'/>");
        catalogue.writePackage("plant/tree"_s, "beech"_s, {{"title"_s, "Beech"_s}, {"year"_s, 1753}});
        catalogue.writePackage("plant"_s, "fern"_s, {{"title"_s, "Fern"_s}, {"year"_s, 1900}});
        catalogue.writeKeyword("tree"_s, "category"_s, "Baum"_s, "Trees"_s);
        catalogue.writeKeyword("oakwood"_s, "noun"_s, "Eichenholz"_s, "Oakwood"_s);
        catalogue.writeLink("oak"_s, "is_a"_s, "tree"_s);
        catalogue.writeLink("beech"_s, "is_a"_s, "tree"_s);
    }

    // The texts that an example shows, and those after a click in its corner: to the order of years, the last
    // title has to go up to the first row.
    void showsWhatItShould()
    {
        for (const Row &row : rows(R"(
            readme/main.qml           | Oak
            embedding/application.qml | Fern, Beech, Oak
            embedding/packages.qml    | Beech, Oak
            embedding/keywords.qml    | Trees, <b>Oa</b>kwood, Trees
            embedding/details.qml     | Oak, installed
            embedding/order.qml       | Sort by year, Beech, Fern, Oak; Sort by year, Oak, Beech, Fern)")) {
            QVERIFY(QDir::setCurrent(EXAMPLES "/"_s + row[0].section("/"_s, 0, 0)));
            const QStringList texts = row[1].split("; "_s);
            {
                const ProblemCapture capture;
                Example example(row[0].section("/"_s, 1),
                                row[0].startsWith("readme"_s) ? QString() : catalogue.path());
                QTRY_COMPARE(row[0] + example.texts(), row[0] + texts.first());
                if (texts.size() > 1)
                    example.tapTopLeft();
                QTRY_COMPARE(row[0] + example.texts(), row[0] + texts.last());
            }
            QCOMPARE(problems, QStringList());
        }
    }

    void readmeProgramListsItsPackages()
    {
        QProcess example;
        example.setWorkingDirectory(EXAMPLES "/readme"_s);
        example.start(QStringLiteral(README_PROGRAM), QStringList());
        QVERIFY2(example.waitForFinished(), qPrintable(example.errorString()));
        QVERIFY(example.exitStatus() == QProcess::NormalExit && example.exitCode() == 0);
        QCOMPARE(example.readAllStandardOutput(), QByteArray("oak: Oak\n"));
        QCOMPARE(example.readAllStandardError(), QByteArray());
    }

    // Its log tells when it has built its index; nothing else may be in it.
    void embeddingProgramRuns()
    {
        QProcess example;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("QT_LOGGING_RULES"_s, "tamsel.*.info=false;tamsel.package.index.debug=true"_s);
        example.setProcessEnvironment(environment);
        example.setProcessChannelMode(QProcess::MergedChannels);
        example.setWorkingDirectory(EXAMPLES "/embedding"_s);
        example.start(QStringLiteral(EMBEDDING_PROGRAM), QStringList());
        while (!example.canReadLine() && example.waitForReadyRead()) {
        }
        QVERIFY(QString::fromUtf8(example.readLine()).contains("Package index build took"_s));
        QCOMPARE(example.state(), QProcess::Running);
        example.terminate();
        QVERIFY(example.waitForFinished());
        QCOMPARE(example.readAll(), QByteArray());
    }

private:
    DirectoryCatalogue catalogue;
};

QTEST_MAIN(tst_Examples)
#include "tst_examples.moc"
