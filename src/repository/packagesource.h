#pragma once

#include "tamselpackagemanager_export.h"

#include <QObject>
#include <QScopedPointer>

namespace ts::pm {

class PackageAccessor;
class PackageSourcePrivate;

/**
 * One place that packages come from. Derive from it to bring in packages of your own.
 *
 * Ownership: whoever creates a source destroys it, after taking it out of the repository.
 * Threads: repository thread only.
 * Errors: a source reports none; what it cannot read is missing from its accessor.
 */
class TAMSELPACKAGEMANAGER_EXPORT PackageSource : public QObject
{
    Q_OBJECT

public:
    ~PackageSource() override;

    /** A constant of the class. Of two sources that define the same id, the higher priority wins. */
    virtual int priority() const = 0;

    /**
     * A new accessor on what the source knows now; the caller owns it. Called once for each index build. Has
     * to be quick: slow work belongs in PackageAccessor::initialize(). Null counts as one that holds nothing.
     */
    [[nodiscard]] virtual PackageAccessor *getAccessor() const = 0;

    /** Saves what the source holds, so that the next start can begin from it. Does nothing by default. */
    virtual void persist();

    /** Starts to look for new data and returns at once. Does nothing by default. */
    virtual void update();

Q_SIGNALS:
    /** To be emitted whenever the data has changed and a new index is wanted. */
    void updateRequired();

protected:
    explicit PackageSource(QObject *parent = nullptr);

private:
    QScopedPointer<PackageSourcePrivate> d;
};

} // namespace ts::pm
