#include "support/directorycatalogue.h"

#include <QDir>
#include <QJsonArray>
#include <QJsonObject>
#include <QProcess>
#include <QQmlComponent>
#include <QQmlContext>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QtTest>

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

// The texts that can be seen, from top to bottom.
QStringList shownTexts(const QQuickItem *item)
{
    QMap<qreal, QString> texts;
    QVector<const QQuickItem *> unvisited{item};
    while (!unvisited.isEmpty()) {
        const QQuickItem *next = unvisited.takeLast();
        const QVariant text = next->property("text");
        if (next->isVisible() && text.isValid() && !text.toString().isEmpty())
            texts.insert(next->mapToItem(item, {}).y(), text.toString());
        const QList<QQuickItem *> children = next->childItems();
        for (const QQuickItem *child : children)
            unvisited.append(child);
    }
    return texts.values();
}

class Example
{
public:
    explicit Example(const QString &file, QObject *provider = nullptr)
    {
        if (provider)
            engine.rootContext()->setContextProperty(QStringLiteral("catalogue"), provider);
        root.reset(
            QQmlComponent(&engine, QUrl::fromLocalFile(QDir::current().absoluteFilePath(file))).create());
        if (auto *item = qobject_cast<QQuickItem *>(root.data())) {
            window.resize(640, 480);
            item->setParentItem(window.contentItem());
            window.show();
        }
    }

    void tapTopLeft() { QTest::mouseClick(&window, Qt::LeftButton, Qt::NoModifier, QPoint(2, 2)); }

    QStringList texts() const
    {
        const auto *ownWindow = qobject_cast<QQuickWindow *>(root.data());
        return shownTexts(ownWindow ? ownWindow->contentItem() : window.contentItem());
    }

private:
    QQuickWindow window;
    QQmlEngine engine;
    QScopedPointer<QObject> root;
};

} // namespace

class tst_QmlExamples : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void readmeShowsItsPackages();
    void embeddingShowsWhatItShould_data();
    void embeddingShowsWhatItShould();
    void embeddingChangesTheOrder();
    void embeddingProgramRuns();

private:
    QObject *makeProvider(QQmlEngine &engine) const;

    ts::pm::test::DirectoryCatalogue catalogue;
};

void tst_QmlExamples::initTestCase()
{
    catalogue.writePackage(QStringLiteral("plant/tree"), QStringLiteral("oak"),
                           {{QStringLiteral("title"), QStringLiteral("Oak")},
                            {QStringLiteral("year"), 1700},
                            {QStringLiteral("size"), QJsonArray{64, 48}},
                            {QStringLiteral("picture"), QStringLiteral("oak.svg")}});
    catalogue.writeFile(QStringLiteral("packages/plant/tree/oak/oak.svg"),
                        "<svg xmlns='http://www.w3.org/2000/svg' width='4' height='3'/>");
    catalogue.writePackage(
        QStringLiteral("plant/tree"), QStringLiteral("beech"),
        {{QStringLiteral("title"), QStringLiteral("Beech")}, {QStringLiteral("year"), 1753}});
    catalogue.writePackage(
        QStringLiteral("plant"), QStringLiteral("fern"),
        {{QStringLiteral("title"), QStringLiteral("Fern")}, {QStringLiteral("year"), 1900}});
    catalogue.writeKeyword(QStringLiteral("tree"), QStringLiteral("category"), QStringLiteral("Baum"),
                           QStringLiteral("Trees"));
    catalogue.writeKeyword(QStringLiteral("oakwood"), QStringLiteral("noun"), QStringLiteral("Eichenholz"),
                           QStringLiteral("Oakwood"));
    catalogue.writeLink(QStringLiteral("oak"), QStringLiteral("is_a"), QStringLiteral("tree"));
    catalogue.writeLink(QStringLiteral("beech"), QStringLiteral("is_a"), QStringLiteral("tree"));
}

QObject *tst_QmlExamples::makeProvider(QQmlEngine &engine) const
{
    QQmlComponent component(&engine);
    component.setData(
        "import Tamsel.PackageManager 1.0; PackageProvider { LocalSource { objectName: 'local' } }", QUrl());
    QObject *provider = component.create();
    if (!provider)
        qFatal("%s", qPrintable(component.errorString()));
    provider->findChild<QObject *>(QStringLiteral("local"))->setProperty("path", catalogue.path());
    return provider;
}

void tst_QmlExamples::readmeShowsItsPackages()
{
    QVERIFY(QDir::setCurrent(QStringLiteral(README_EXAMPLES)));
    {
        const ProblemCapture capture;
        const Example example(QStringLiteral("main.qml"));
        QTRY_COMPARE(example.texts(), QStringList{QStringLiteral("Oak")});
    }
    QCOMPARE(problems, QStringList());
}

void tst_QmlExamples::embeddingShowsWhatItShould_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QStringList>("texts");

    const QStringList titles{QStringLiteral("Beech"), QStringLiteral("Oak")};
    QTest::newRow("application") << QStringLiteral("application.qml")
                                 << (QStringList{QStringLiteral("Fern")} + titles);
    QTest::newRow("packages") << QStringLiteral("packages.qml") << titles;
    QTest::newRow("keywords") << QStringLiteral("keywords.qml")
                              << QStringList{QStringLiteral("Trees"), QStringLiteral("<b>Oa</b>kwood"),
                                             QStringLiteral("Trees")};
    QTest::newRow("details") << QStringLiteral("details.qml")
                             << QStringList{QStringLiteral("Oak"), QStringLiteral("installed")};
}

void tst_QmlExamples::embeddingShowsWhatItShould()
{
    QFETCH(const QString, file);
    QFETCH(const QStringList, texts);
    QVERIFY(QDir::setCurrent(QStringLiteral(EMBEDDING_EXAMPLES)));
    {
        const ProblemCapture capture;
        QQmlEngine engine;
        const QScopedPointer<QObject> provider(makeProvider(engine));
        const Example example(file, provider.data());
        QTRY_COMPARE(example.texts(), texts);
    }
    QCOMPARE(problems, QStringList());
}

// To the order of years, the last title has to go up to the first row.
void tst_QmlExamples::embeddingChangesTheOrder()
{
    const QString header = QStringLiteral("Sort by year");
    const QString beech = QStringLiteral("Beech");
    const QString fern = QStringLiteral("Fern");
    const QString oak = QStringLiteral("Oak");
    QVERIFY(QDir::setCurrent(QStringLiteral(EMBEDDING_EXAMPLES)));
    {
        const ProblemCapture capture;
        QQmlEngine engine;
        const QScopedPointer<QObject> provider(makeProvider(engine));
        Example example(QStringLiteral("order.qml"), provider.data());
        QTRY_COMPARE(example.texts(), (QStringList{header, beech, fern, oak}));
        example.tapTopLeft();
        QTRY_COMPARE(example.texts(), (QStringList{header, oak, beech, fern}));
    }
    QCOMPARE(problems, QStringList());
}

// Its log tells when it has built its index; nothing else may be in it.
void tst_QmlExamples::embeddingProgramRuns()
{
    QProcess example;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("QT_LOGGING_RULES"),
                       QStringLiteral("tamsel.*.info=false;tamsel.package.index.debug=true"));
    example.setProcessEnvironment(environment);
    example.setProcessChannelMode(QProcess::MergedChannels);
    example.setWorkingDirectory(QStringLiteral(EMBEDDING_EXAMPLES));
    example.start(QStringLiteral(EMBEDDING_PROGRAM), QStringList());
    while (!example.canReadLine() && example.waitForReadyRead()) {
    }
    QVERIFY(QString::fromUtf8(example.readLine()).contains(QStringLiteral("Package index build took")));
    QCOMPARE(example.state(), QProcess::Running);
    example.terminate();
    QVERIFY(example.waitForFinished());
    QCOMPARE(example.readAll(), QByteArray());
}

QTEST_MAIN(tst_QmlExamples)
#include "tst_qmlexamples.moc"
