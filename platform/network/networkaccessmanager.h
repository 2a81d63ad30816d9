#pragma once

#include "tamselnetwork_export.h"

#include <QNetworkAccessManager>
#include <QSharedPointer>

namespace ts::network {

/**
 * The access manager that all parts of a process share, so that they share its connections.
 *
 * Ownership: lives for as long as somebody holds the shared pointer; the next caller after that gets a new
 * one.
 * Threads: lives on the thread of the first caller, which has to be the thread of every other caller.
 * Redirects are followed only to the same or a safer scheme. Cookies are neither kept nor sent.
 */
class TAMSELNETWORK_EXPORT NetworkAccessManager : public QNetworkAccessManager
{
    Q_OBJECT

public:
    explicit NetworkAccessManager(QObject *parent = nullptr);
    ~NetworkAccessManager() override;

    static QSharedPointer<NetworkAccessManager> sharedInstance();
};

} // namespace ts::network
