#include "getrequest.h"

namespace ts {

GetRequest::GetRequest(const QNetworkRequest &request, QNetworkAccessManager *manager, QObject *parent)
    : Request(request, manager, parent)
{
}

GetRequest::~GetRequest() = default;

} // namespace ts
