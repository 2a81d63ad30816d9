#pragma once

#include "literals.h"
#include "manualinstaller.h"
#include "memorysource.h"
#include "testprovider.h"

#include <QAbstractItemModelTester>
#include <QAbstractListModel>
#include <QPointer>
#include <QSet>

namespace ts::pm {
class PackageNode;
}

namespace ts::pm::test {

QJsonObject operator""_json(const char *text, std::size_t size);

/** What a word of a play stands for; with the text after its colon, if it has one. */
using Verbs = QHash<QString, std::function<void(const QString &argument)>>;

/**
 * Performs a play, such as "load:a[started] fail[failed, started] wait", and returns it with what came of
 * each word in the brackets behind it. To be compared with the play, whose brackets say what has to come.
 */
QString perform(const QString &play, const Verbs &verbs, const std::function<QString()> &effects);

/** The lines of a table, each in two cells. A line without "|" goes on with the one before. */
QVector<QPair<QString, QString>> tableRows(const char *table);

/** Makes each row of a table, a name and a play, a row of test data. */
void addPlays(const char *table);

/** A repository with one source in memory, and with installers that end when the test says so. */
class Stage
{
public:
    Stage();

    /** Builds an index of what the catalogue holds now. */
    void publish();
    PackageRepository *repository() const { return provider.packageRepository(); }
    PackageNode *node(const QString &id) const;

    /** Lets all queued calls and all jobs of the thread pool come to their end. */
    static void settle();
    /** Waits until a thread pool of one place has room for another job. */
    [[nodiscard]] static bool waitForRoom();

    MemorySource source;
    MemoryCatalogue &catalogue = source.catalogue;
    TestProvider provider;
    QVector<QPointer<ManualInstaller>> started; // null once they are gone
    QSet<QString> succeedAtOnce;
    QSet<QString> failAtOnce;
};

/** Writes down the signals of an object in the order in which they come. */
class SignalLog : public QObject
{
    Q_OBJECT

public:
    /** Signals that \a base has too are left out. */
    explicit SignalLog(QObject *object, const QMetaObject &base = QObject::staticMetaObject);

    /** What has come since the last call, as in "nameChanged, updateRequested". */
    QString take() { return std::exchange(lines, {}).join(", "_s); }

    std::function<QString()> detail; // if set, what to write after each name

protected:
    QStringList lines;

private Q_SLOTS:
    void note();
};

/** The signals of a list model, as in "remove 1-2, move 0 to 3, countChanged", under a tester that aborts. */
class ModelLog : public SignalLog
{
    Q_OBJECT

public:
    explicit ModelLog(QAbstractListModel *model);

    /** The rows with all their roles as the signals tell them; or a complaint, if the model has others. */
    QString rows() const;

private:
    QStringList read(int first, int last) const;

    QAbstractListModel *const model;
    QAbstractItemModelTester tester;
    QStringList mirror;
};

} // namespace ts::pm::test
