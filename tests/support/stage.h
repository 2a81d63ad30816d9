#pragma once

#include "memorysource.h"
#include "table.h"
#include "testprovider.h"

#include <QAbstractItemModelTester>
#include <QAbstractListModel>
#include <QCoreApplication>
#include <QPointer>
#include <QSet>
#include <QThreadPool>

namespace ts::pm::test {

/** What a word of a play stands for; with the text after its colon, if it has one. */
using Verbs = QHash<QString, std::function<void(const QString &argument)>>;

/**
 * Performs a play, such as "load:a[started] fail[failed, started] wait", and returns it with what came of
 * each word in the brackets behind it. To be compared with the play, whose brackets say what has to come.
 */
QString perform(const QString &play, const Verbs &verbs, const std::function<QString()> &effects);

/** A repository with one source in memory, and with installers that end when the test says so. */
class Stage
{
public:
    Stage();

    /** Builds an index of what the catalogue holds now. */
    void publish()
    {
        if (!provider.rebuild())
            qFatal("There is no index");
    }
    PackageRepository *repository() const { return provider.packageRepository(); }

    /** Lets all queued calls and all jobs of the thread pool come to their end. */
    static void settle()
    {
        QCoreApplication::processEvents();
        QThreadPool::globalInstance()->waitForDone();
        QCoreApplication::processEvents();
    }

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

    std::function<QString()> detail;             // if set, what to write after each name
    QHash<QString, std::function<void()>> deeds; // to be done once, at the signal of that name

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
    /** What has come since the last call, and behind a semicolon the rows, if they are others than then. */
    QString takeWithRows();

    QString separator = ", "_s; // of rows

private:
    QStringList read(int first, int last) const;

    QAbstractListModel *const model;
    QAbstractItemModelTester tester;
    QStringList mirror;
    QString rowsBefore;
};

} // namespace ts::pm::test
