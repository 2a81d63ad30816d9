#pragma once

#include "database/documentpackagesource.h"
#include "database/persistedlisting_p.h"
#include "database/pollcountdown_p.h"

namespace ts::pm {

class DocumentPackageUpdate;

// Repository thread only.
class DocumentPackageSourcePrivate
{
public:
    DocumentPackageSourcePrivate(DocumentPackageSource *q, const QString &type);

    QUrl viewUrl() const;
    void finishUpdate();

    DocumentPackageSource *const q;
    const QString type;
    const QUrl database; // the one whose documents have been persisted, whatever the context says by now
    PersistedListing listing;
    DocumentPackageUpdate *lastUpdate = nullptr; // running or finished, a child of q
    PollCountdown countdown;
};

} // namespace ts::pm
