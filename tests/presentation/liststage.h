#pragma once

#include "index/packagenode.h"
#include "presentation/packagelistmodel.h"
#include "stage.h"

#include <QCoreApplication>
#include <QFutureWatcher>
#include <QSemaphore>
#include <QTimer>

#include <memory>

namespace ts::pm::test {

/** Takes the packages that a test lists. */
class ListMatcher : public PackageMatcher
{
public:
    std::function<bool(PackageNode *)> matchFunction() const override
    {
        return [taken = ids, gate = gate](PackageNode *package) {
            if (gate)
                gate->acquire();
            return taken.contains(package->id().toString());
        };
    }

    QStringList ids;
    std::shared_ptr<QSemaphore> gate; // if set, a job waits here for each package
};

/** Orders packages as a test lists them. */
class ListSorter : public PackageSorter
{
public:
    std::function<bool(const PackageNode *, const PackageNode *)> sortFunction() const override
    {
        ++asked;
        return [order = ids](const PackageNode *a, const PackageNode *b) {
            return order.indexOf(a->id().toString()) < order.indexOf(b->id().toString());
        };
    }

    QStringList ids;
    mutable int asked = 0;
};

/** A list model that shows the packages that a test lists, in the order of that list; at first all. */
class ListStage : public Stage
{
public:
    explicit ListStage(const QStringList &ids)
        : timer(model.findChild<QTimer *>())
        , watcher(model.findChild<QFutureWatcherBase *>())
        , log(&model)
    {
        for (const QString &id : ids)
            catalogue.addPackage(id);
        publish();
        list(ids);
        model.setMatcher(&matcher);
        model.setSorter(&sorter);
        timer->setInterval(0);
        log.separator.clear();
        startJob();
        model.setPackageProvider(&provider);
        told();
    }

    void list(const QStringList &ids)
    {
        matcher.ids = ids;
        sorter.ids = ids;
        Q_EMIT matcher.updateRequested();
    }

    /** Waits until the model has started a job, if it means to. */
    void startJob() const
    {
        while (timer->isActive())
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }

    /** Waits until the model has come to rest. */
    void rest() const
    {
        startJob();
        while (watcher->isRunning())
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        QCoreApplication::processEvents();
    }

    /** The signals until the model has come to rest. */
    QString told()
    {
        rest();
        return log.take();
    }

    ListMatcher matcher;
    ListSorter sorter;
    PackageListModel model;
    QTimer *const timer;
    const QFutureWatcherBase *const watcher;
    ModelLog log;
};

} // namespace ts::pm::test
