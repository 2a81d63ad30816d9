#pragma once

#include "database/couchdbpackagesource.h"
#include "database/persistedlisting_p.h"
#include "database/pollcountdown_p.h"

#include <QNetworkAccessManager>
#include <QPointer>
#include <QUrl>

class QFile;

namespace ts {
class Request;
}

namespace ts::pm {

// Repository thread only.
class CouchDBPackageSourcePrivate
{
public:
    CouchDBPackageSourcePrivate(CouchDBPackageSource *q, const QUrl &database,
                                QNetworkAccessManager *manager);

    QUrl viewUrl() const;
    void abandonRequest();
    void forgetRequest();

    CouchDBPackageSource *const q;
    const QUrl database;
    const QPointer<QNetworkAccessManager> manager;
    ts::Request *request = nullptr; // running, a child of q
    QFile *file = nullptr;          // receives the answer, a child of the request
    PersistedListing listing;
    ts::util::WorkingDir workingDir; // of the newest answer; one that was taken goes with its last reader
    PollCountdown countdown;
};

} // namespace ts::pm
