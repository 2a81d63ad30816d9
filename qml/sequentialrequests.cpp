#include "sequentialrequests.h"

#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QRegularExpression>
#include <QVector>

#include <algorithm>

namespace ts::pm {

namespace {

constexpr int mostLines = 8; // Image asks for as many pictures at a time; further requests share a line

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
        QNetworkReply *reply = createRequest(operation, request, outgoingData);
        connect(reply, &QNetworkReply::finished, this, [this, reply] {
            const QVariant status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute);
            usedUp |= status.isValid() && status.toInt() != 200;
        });
        return reply;
    }

    /** Whether the server takes no further request over this connection. */
    bool isUsedUp() const { return usedUp; }

    int requestCount() const
    {
        const QList<QNetworkReply *> all = replies();
        return int(std::count_if(all.begin(), all.end(), [](auto *reply) { return reply->isRunning(); }));
    }

    QList<QNetworkReply *> replies() const
    {
        return findChildren<QNetworkReply *>(QString(), Qt::FindDirectChildrenOnly);
    }

private:
    bool usedUp = false;
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
        return freeLine()->send(operation, sequential, outgoingData);
    }

private:
    // The one with the fewest requests under way if all have some.
    Line *freeLine()
    {
        dropUsedUpLines();
        Line *best = nullptr;
        int count = 0;
        for (Line *line : qAsConst(lines)) {
            if (line->isUsedUp())
                continue;
            ++count;
            if (!best || line->requestCount() < best->requestCount())
                best = line;
        }
        if (best && (best->requestCount() == 0 || count == mostLines))
            return best;
        lines.append(new Line(this));
        return lines.constLast();
    }

    // Not before their replies have been read and deleted.
    void dropUsedUpLines()
    {
        for (int i = lines.size() - 1; i >= 0; --i) {
            if (lines.at(i)->isUsedUp() && lines.at(i)->replies().isEmpty())
                delete lines.takeAt(i);
        }
    }

    QVector<Line *> lines; // children
};

} // namespace

QNetworkAccessManager *SequentialRequests::create(QObject *parent)
{
    return new SequentialAccessManager(parent);
}

} // namespace ts::pm
