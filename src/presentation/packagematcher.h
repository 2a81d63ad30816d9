#pragma once

#include "tamselpackagemanager_export.h"

#include <QObject>

#include <functional>

namespace ts::pm {

class PackageNode;

/**
 * Says which packages a PackageListModel shows.
 *
 * Ownership: models and groups do not own their matchers.
 * Threads: repository thread only. What goes to a worker is the function that matchFunction() returns.
 * Signals: updateRequested() whenever matchFunction() may return another function.
 * Errors: none.
 */
class TAMSELPACKAGEMANAGER_EXPORT PackageMatcher : public QObject
{
    Q_OBJECT

public:
    explicit PackageMatcher(QObject *parent = nullptr);
    ~PackageMatcher() override;

    /**
     * A function with copies of the present parameters, safe to call from any thread. An empty one means that
     * the matcher restricts nothing.
     */
    virtual std::function<bool(PackageNode *)> matchFunction() const = 0;

Q_SIGNALS:
    void updateRequested();
};

} // namespace ts::pm
