#pragma once

#include "repository/packagesource.h"
#include "tamselpackagemanager_export.h"

#include <QScopedPointer>

namespace ts::account {
class Service;
}

namespace ts::pm {

class PackageServerPrivate;

/**
 * The packages of one package server, as its ledger tells them.
 *
 * Starts from the ledger that persist() saved in an earlier run, and polls the server for a newer one: at
 * once when the service is ready, 120 seconds after each answer, and after failures in a row in 5, 10, 20,
 * 40, 80, 160 and from then on 320 seconds. A new ledger is verified on a worker thread and becomes current
 * only if it is valid; until then, and whenever the server is away, the one before stays in use.
 *
 * Ownership: the service belongs to the application and may go away at any time; a server without a service
 * keeps its packages and installs nothing more. One source for each service.
 * Threads: repository thread only, which has to be that of the service and the main thread of the
 * application. Destroying a server does not wait for requests and verifications under way.
 * Signals: updateRequired() when another ledger has become current, and after it pollFinished().
 * Errors: failed polls are logged in "tamsel.packageserver", rejected ledgers in
 * "tamsel.packageserver.ledger". A ledger may have 256 MiB; a larger one is a failed poll. The log shows no
 * more than the first 64 KiB of an error page.
 */
class TAMSELPACKAGEMANAGER_EXPORT PackageServer : public PackageSource
{
    Q_OBJECT

public:
    /** What became of a poll. */
    enum PollResult {
        LedgerUnchanged, ///< the server has no newer ledger
        LedgerUpdated,   ///< a new ledger has become current
        LedgerRejected,  ///< the server gave a ledger that is damaged, or not signed as it has to be
        PollFailed,      ///< the server is away or refuses to answer
    };
    Q_ENUM(PollResult)

    /** Enables \a service, and loads the ledger that was saved under its uuid. */
    explicit PackageServer(ts::account::Service *service, QObject *parent = nullptr);
    ~PackageServer() override;

    /** 0, below local directories and databases. */
    int priority() const override;
    PackageAccessor *getAccessor() const override;

    /** Saves the current ledger on a worker thread, unless there is none, or no service. */
    void persist() override;

    /** Polls at once, unless a poll is under way or the service is not ready. */
    void update() override;

    /** Whether the service is alive. */
    bool isValid() const;

    /** The service, or null. */
    ts::account::Service *service() const;

Q_SIGNALS:
    /** Not for a poll whose ledger is overtaken by that of the next one while it is being verified. */
    void pollFinished(ts::pm::PackageServer::PollResult result);

protected:
    void timerEvent(QTimerEvent *event) override;

private Q_SLOTS:
    void processServiceStatusChange();
    void processResponse();

private:
    friend class PackageServerPrivate;
    QScopedPointer<PackageServerPrivate> d;
};

} // namespace ts::pm
