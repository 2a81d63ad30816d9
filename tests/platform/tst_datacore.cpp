#include "support/literals.h"

#include <TamselDataCore/Context>
#include <TamselDataCore/LinkedDocument>
#include <TamselDataCore/Loader>

#include <QtTest>

using namespace ts::data;
using namespace ts::pm::test;

namespace {

QStringList history; // what loaders have been asked

class TestLoader : public Loader
{
    Q_OBJECT

public:
    TestLoader(const QString &name, int priority, Context *context)
        : Loader(priority, context)
    {
        setObjectName(name);
    }

    bool tryLoad(const QString &id) override
    {
        history << objectName() + " "_s + id;
        if (objectName() == "quick"_s)
            deliver(id, 1);
        if (id == "fatal"_s) {
            delete context();
            return false;
        }
        return id.startsWith(objectName().at(0));
    }

    void deliver(const QString &id, int revision) { loaded(id, {{"rev"_s, revision}}); }
};

} // namespace

class tst_DataCore : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { history.clear(); }

    void asksLoadersInOrder()
    {
        Context context(QUrl("http://localhost:5984"_s), "trees"_s);
        new TestLoader("low"_s, 1, &context);
        auto *quick = new TestLoader("quick"_s, 2, &context);
        auto *second = new TestLoader("later"_s, 2, &context);
        QVERIFY(context.openDocument("q1"_s)->isLoaded());
        QCOMPARE(history, QStringList("quick q1"_s));
        delete quick;

        LinkedDocument *document = context.openDocument("l1"_s);
        QCOMPARE(context.openDocument("l1"_s), document);
        QCOMPARE(history.mid(1), QStringList("later l1"_s));
        QVERIFY(!document->isLoaded() && !context.loadedDocument("l1"_s));
        delete second; // before it has delivered: the other one takes over
        QTRY_COMPARE(history.mid(2), QStringList("low l1"_s));

        LinkedDocument *orphan = context.openDocument("x1"_s);
        TestLoader late("x"_s, 0, &context);
        QSignalSpy loaded(orphan, &LinkedDocument::loaded);
        QTRY_COMPARE(history.constLast(), "x x1"_s);
        late.deliver("unopened"_s, 1);
        late.deliver("x1"_s, 1);
        late.deliver("x1"_s, 2);
        QCOMPARE(loaded.count(), 1);
        QCOMPARE(context.loadedDocument("x1"_s), orphan);
        QCOMPARE(orphan->getStructValue(QString(), "rev"_s), QJsonValue(2));
    }

    void survivesAnyOrderOfDestruction()
    {
        auto context = std::make_unique<Context>(QUrl(), QString());
        auto *loader = new TestLoader("d"_s, 0, context.get());
        connect(context->openDocument("d1"_s), &LinkedDocument::loaded, this, [this] { delete sender(); });
        loader->deliver("d1"_s, 1);
        QVERIFY(!context->loadedDocument("d1"_s));
        QVERIFY(context->openDocument("d1"_s));
        QCOMPARE(history, (QStringList{"d d1"_s, "d d1"_s}));
        auto *moved = new TestLoader("m"_s, 0, context.get());
        moved->setParent(this);
        QVERIFY(!context.release()->openDocument("fatal"_s));
        moved->deliver("d1"_s, 1);
        delete moved;
    }

    void storesStructValues()
    {
        LinkedDocument document("id"_s);
        document.setData({{"a"_s, 1}, {"o"_s, QJsonObject{{"b"_s, true}}}});
        QSignalSpy changed(&document, &LinkedDocument::dataChanged);
        document.setStructValue("o"_s, "b"_s, true);
        document.setStructValue("p/q"_s, "none"_s, QJsonValue::Undefined);
        QCOMPARE(changed.count(), 0);
        document.setStructValue("a/c"_s, "d/e"_s, "x"_s);
        document.setStructValue("o"_s, "b"_s, QJsonValue::Undefined);
        QCOMPARE(changed.count(), 2);
        QCOMPARE(QJsonDocument(document.data()).toJson(QJsonDocument::Compact),
                 QByteArray(R"({"a":{"c":{"d/e":"x"}},"o":{}})"));
        QCOMPARE(document.getStructValue("a/c"_s, "d/e"_s), QJsonValue("x"_s));
        QVERIFY(document.getStructValue("a/x"_s, "y"_s).isUndefined());
    }
};

QTEST_GUILESS_MAIN(tst_DataCore)
#include "tst_datacore.moc"
