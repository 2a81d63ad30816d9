#pragma once

#include "presentation/packagereference.h"

#include "storage/packageinstaller.h"

#include <QSharedPointer>

#include <memory>

namespace ts::pm {

class PackageIndex;
class PackageNode;

/** A package as one index has it, with the job that installs it. Has all three or none. */
struct ReferenceState
{
    QSharedPointer<PackageIndex> index; // keeps the node alive
    PackageNode *node = nullptr;
    std::unique_ptr<PackageInstaller> installer;
};

// Repository thread only.
class PackageReferencePrivate
{
public:
    PackageReferencePrivate(PackageReference *q, const QString &id);

    PackageRepository *repository() const;
    ReferenceState createState() const;
    bool renew(ReferenceState &state);
    void setStatus(PackageReference::Status newStatus);
    void watchPending(PackageInstaller *installer);
    void checkPending(PackageInstaller *installer);
    void finishUpdate();
    void scheduleRetry();

    PackageReference *const q;
    const QString id;
    bool retryPending = false;
    qint32 retryCount = 0; // exponent of the next delay
    quint32 renewals = 0;  // of either state, so far
    ReferenceState currentState;
    ReferenceState pendingState; // of a newer index, waits for its installer
    PackageReference::Status status = PackageReference::Unknown;
};

} // namespace ts::pm
