#include "sequentialrequests.h"

#include <QNetworkAccessManager>
#include <QNetworkRequest>

namespace ts::pm {

namespace {

class SequentialAccessManager : public QNetworkAccessManager
{
public:
    using QNetworkAccessManager::QNetworkAccessManager;

protected:
    QNetworkReply *createRequest(Operation operation, const QNetworkRequest &request,
                                 QIODevice *outgoingData) override
    {
        QNetworkRequest sequential = request;
        if (request.url().host() == QLatin1String("localhost"))
            sequential.setAttribute(QNetworkRequest::HttpPipeliningAllowedAttribute, false);
        return QNetworkAccessManager::createRequest(operation, sequential, outgoingData);
    }
};

} // namespace

QNetworkAccessManager *SequentialRequests::create(QObject *parent)
{
    return new SequentialAccessManager(parent);
}

} // namespace ts::pm
