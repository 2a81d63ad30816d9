#pragma once

#include "tamselpackagemanager_export.h"

#include <QObject>

#include <functional>

namespace ts::pm {

class PackageNode;

/**
 * Says in which order a PackageListModel shows its packages.
 *
 * Ownership: models do not own their sorters.
 * Threads: repository thread only. What goes to a worker is the function that sortFunction() returns.
 * Signals: updateRequested() for sorters of your own. Those of this library never emit it: a change of their
 * parameters shows with the model's next update from another cause. See PackageListModel on how to change the
 * order of a list that is shown.
 * Errors: none.
 */
class TAMSELPACKAGEMANAGER_EXPORT PackageSorter : public QObject
{
    Q_OBJECT

public:
    explicit PackageSorter(QObject *parent = nullptr);
    ~PackageSorter() override;

    /**
     * A strict less-than with copies of the present parameters, safe to call from any thread. An empty one
     * leaves the order of the index.
     */
    virtual std::function<bool(const PackageNode *, const PackageNode *)> sortFunction() const = 0;

Q_SIGNALS:
    void updateRequested();
};

} // namespace ts::pm
