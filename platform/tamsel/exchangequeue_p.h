#pragma once

#include <QHash>
#include <QList>
#include <QObject>

class QNetworkAccessManager;

namespace ts {

class RequestPrivate;

/**
 * The exchanges of one access manager, in a line for each origin. The first of a line are under way, as many
 * as Qt makes connections to an origin; the others wait. Left to Qt they would wait there, where nobody can
 * tell them from exchanges with a server that does not answer.
 *
 * Ownership: a child of its access manager.
 * Threads: the access manager's.
 * What other code asks of the access manager is not counted.
 */
class ExchangeQueue : public QObject
{
    Q_OBJECT

public:
    /** The queue of \a manager, made for its first exchange. */
    static ExchangeQueue *of(QNetworkAccessManager *manager);

    /** True if \a exchange may start now. If not, its start() will be called, from the event loop. */
    bool enter(RequestPrivate *exchange, const QString &origin);

    /** To be called once by whoever has entered, under way or not. */
    void leave(RequestPrivate *exchange, const QString &origin);

private:
    using QObject::QObject;

    QHash<QString, QList<RequestPrivate *>> lines; // by origin, none of them empty
};

} // namespace ts
