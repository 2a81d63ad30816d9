#pragma once

#include "request.h"
#include "tamsel_export.h"

namespace ts {

/**
 * A GET request that starts in its constructor. Everything else is told by its base class.
 */
class TAMSEL_EXPORT GetRequest : public Request
{
    Q_OBJECT

public:
    /** Without a live \a manager the request fails, through finished(). */
    GetRequest(const QNetworkRequest &request, QNetworkAccessManager *manager, QObject *parent = nullptr);
    ~GetRequest() override;
};

} // namespace ts
