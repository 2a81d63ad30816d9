#include "sequentialrequests.h"

#include "relayedreply.h"

#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QPointer>
#include <QQueue>
#include <QRegularExpression>
#include <QVector>

#include <algorithm>

namespace ts::pm {

namespace {

constexpr int mostLines = 8; // Image asks for as many pictures at a time; further requests wait

// Whether the file comes from the server of files that are not local yet, as far as its URL tells. Other
// servers on this machine may want their cookies back, which each manager has of its own.
bool isProxied(const QUrl &url)
{
    static const QRegularExpression keyAndFile(QStringLiteral("^/[A-Za-z0-9_-]{11}/"));
    return url.host() == QLatin1String("localhost") && keyAndFile.match(url.path()).hasMatch();
}

/** A manager for one request at a time, so that all of them use one connection. */
class Line : public QNetworkAccessManager
{
public:
    using QNetworkAccessManager::QNetworkAccessManager;

    QNetworkReply *send(Operation operation, const QNetworkRequest &request, QIODevice *outgoingData)
    {
        ready = false;
        QNetworkReply *reply = createRequest(operation, request, outgoingData);
        connect(reply, &QNetworkReply::finished, this, [this, reply] {
            const QVariant status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute);
            ready = !status.isValid() || status.toInt() == 200;
        });
        return reply;
    }

    /** Whether the server takes the next request over this connection. */
    bool isReady() const { return ready; }

    bool isBusy() const
    {
        const QList<QNetworkReply *> all = replies();
        return std::any_of(all.begin(), all.end(), [](auto *reply) { return reply->isRunning(); });
    }

    QList<QNetworkReply *> replies() const
    {
        return findChildren<QNetworkReply *>(QString(), Qt::FindDirectChildrenOnly);
    }

private:
    bool ready = true;
};

class SequentialAccessManager : public QNetworkAccessManager
{
public:
    using QNetworkAccessManager::QNetworkAccessManager;

protected:
    QNetworkReply *createRequest(Operation operation, const QNetworkRequest &request,
                                 QIODevice *outgoingData) override
    {
        if (!isProxied(request.url()))
            return QNetworkAccessManager::createRequest(operation, request, outgoingData);
        QNetworkRequest sequential = request;
        sequential.setAttribute(QNetworkRequest::HttpPipeliningAllowedAttribute, false);
        auto *reply = new RelayedReply(operation, sequential, this);
        waiting.enqueue({reply, outgoingData});
        sendWaiting();
        return reply;
    }

private:
    struct Waiting
    {
        QPointer<RelayedReply> reply; // null if nobody wants it any more
        QPointer<QIODevice> outgoingData;
    };

    void sendWaiting()
    {
        while (!waiting.isEmpty()) {
            const Waiting next = waiting.head();
            if (next.reply && next.reply->isRunning()) {
                Line *line = freeLine();
                if (!line)
                    return;
                send(line, next);
            }
            waiting.dequeue();
        }
    }

    // The next one later, since a line must not go while it looks on at the end of a reply.
    void send(Line *line, const Waiting &next)
    {
        RelayedReply *relayed = next.reply;
        QNetworkReply *reply = line->send(relayed->operation(), relayed->request(), next.outgoingData);
        relayed->follow(reply);
        connect(reply, &QNetworkReply::finished, this, &SequentialAccessManager::sendWaiting,
                Qt::QueuedConnection);
        connect(reply, &QObject::destroyed, this, &SequentialAccessManager::sendWaiting,
                Qt::QueuedConnection);
    }

    // Null if each is busy, and there are as many as there may be.
    Line *freeLine()
    {
        dropUsedUpLines();
        int busy = 0;
        for (Line *line : qAsConst(lines)) {
            if (line->isReady())
                return line;
            busy += line->isBusy();
        }
        if (busy == mostLines)
            return nullptr;
        lines.append(new Line(this));
        return lines.constLast();
    }

    // Not before their replies have been read and deleted.
    void dropUsedUpLines()
    {
        for (int i = lines.size() - 1; i >= 0; --i) {
            if (!lines.at(i)->isReady() && lines.at(i)->replies().isEmpty())
                delete lines.takeAt(i);
        }
    }

    QVector<Line *> lines; // children
    QQueue<Waiting> waiting;
};

} // namespace

QNetworkAccessManager *SequentialRequests::create(QObject *parent)
{
    return new SequentialAccessManager(parent);
}

} // namespace ts::pm
