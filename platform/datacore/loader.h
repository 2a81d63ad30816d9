#pragma once

#include "tamseldatacore_export.h"

#include <QObject>
#include <QPointer>

class QJsonObject;

namespace ts::data {

class Context;

/**
 * One way by which the documents of a context get their data. Derive from it to bring in your own.
 *
 * Ownership: a child of its context. Deleting it earlier is fine, documents that it has not delivered are
 * then offered to the others.
 * Threads: the thread of the context.
 * Errors: a loader that cannot deliver keeps silent; the document stays unloaded.
 */
class TAMSELDATACORE_EXPORT Loader : public QObject
{
    Q_OBJECT

public:
    /** Loaders of a higher \a priority are asked first. Without a \a context nobody asks. */
    Loader(int priority, Context *context);
    ~Loader() override;

    int priority() const { return rank; }

    /** Null without one, or when it has gone. */
    Context *context() const;

    /**
     * Whether this loader takes care of the document \a id. True is a promise to call loaded() for it, here
     * or later, once or whenever new data have come. Called by the context when the document is opened and,
     * for as long as nobody takes care of it, again whenever a loader has come or gone.
     */
    virtual bool tryLoad(const QString &id) = 0;

protected:
    /** Hands \a data to the open document \a id. Without a context, or if it is not open, nothing happens. */
    void loaded(const QString &id, const QJsonObject &data);

private:
    const int rank;
    const QPointer<Context> owner;
};

} // namespace ts::data
