#pragma once

#include "storage/fileproxyserver.h"

#include <QHash>
#include <QMultiHash>
#include <QString>
#include <QTcpSocket>

namespace ts::pm {

class FileProxyConnection;

class FileProxyServerPrivate
{
public:
    explicit FileProxyServerPrivate(FileProxyServer *q);

    /** Returns why the server cannot listen; empty if it does. */
    QString listen();
    bool reserveTwin();
    void resumeAcceptingSoon();

    FileProxyServer *const q;
    QHash<unsigned int, FileProxyConnection *> connections; // by id
    QHash<QString, IFileProxy *> providers;                 // by key, not owned

    // Ids of the connections that wait for a file, by target: one that resolves need not look at all others.
    // A connection that has told its client of an error by itself stays, and may wait for another by now.
    QMultiHash<QString, unsigned int> waiting;

    // Bound to the port of the server at "::1", and not listening.
    QTcpSocket twin;
};

} // namespace ts::pm
