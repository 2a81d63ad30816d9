#pragma once

#include "server/packageledger.h"
#include "server/packageserver.h"

#include <TamselAccount/Service>

#include <QDeadlineTimer>
#include <QDir>
#include <QFutureWatcher>
#include <QPointer>
#include <QRunnable>
#include <QSharedPointer>

namespace ts {
class Request;
}

namespace ts::pm {

// Repository thread only.
class PackageServerPrivate
{
public:
    PackageServerPrivate(PackageServer *q, ts::account::Service *service);

    QDir persistDir() const;
    bool isReady() const;
    void loadPersistedLedger();
    void updateLedger();
    void loadNewLedger(const QByteArray &data, const QByteArray &etag);
    void swapLedger();

    void noteSuccess();
    void noteFailure();

    PackageServer *const q;
    QPointer<ts::account::Service> service;
    ts::Request *request = nullptr;       // in flight; deletes itself after finished()
    QSharedPointer<PackageLedger> ledger; // never null
    QFutureWatcher<QSharedPointer<PackageLedger>> *const watcher; // of the newest verification
    QDeadlineTimer nextUpdate{0, Qt::CoarseTimer};
    int failures = 0;    // polls in a row
    bool polled = false; // whether the newest verification is that of a ledger from the server
};

/** Saves a ledger. Shares it, so that the server may go or take a newer one meanwhile. Worker job only. */
class StorageRunnable : public QRunnable
{
public:
    StorageRunnable(const QSharedPointer<PackageLedger> &ledger, const QDir &dir, const QString &name);

    void run() override;

private:
    const QSharedPointer<PackageLedger> ledger;
    const QDir dir;
    const QString name; // of the server, for the log
};

} // namespace ts::pm
