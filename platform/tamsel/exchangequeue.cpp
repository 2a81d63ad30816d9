#include "exchangequeue_p.h"

#include "request_p.h"

namespace ts {

namespace {

constexpr int MostUnderWay = 6; // QNetworkAccessManager makes no more connections to an origin

} // namespace

ExchangeQueue *ExchangeQueue::of(QNetworkAccessManager *manager)
{
    auto *queue = manager->findChild<ExchangeQueue *>(QString(), Qt::FindDirectChildrenOnly);
    return queue ? queue : new ExchangeQueue(manager);
}

bool ExchangeQueue::enter(RequestPrivate *exchange, const QString &origin)
{
    QList<RequestPrivate *> &line = lines[origin];
    line.append(exchange);
    return line.size() <= MostUnderWay;
}

// The next one starts from the event loop: this may be running because the access manager is going away.
void ExchangeQueue::leave(RequestPrivate *exchange, const QString &origin)
{
    const auto line = lines.find(origin);
    const int place = line->indexOf(exchange);
    line->removeAt(place);
    if (place < MostUnderWay && line->size() >= MostUnderWay) {
        RequestPrivate *next = line->at(MostUnderWay - 1);
        QMetaObject::invokeMethod(
            next->q, [next] { next->start(); }, Qt::QueuedConnection);
    }
    if (line->isEmpty())
        lines.erase(line);
}

} // namespace ts
