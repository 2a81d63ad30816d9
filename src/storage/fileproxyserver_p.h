#pragma once

#include "storage/fileproxyserver.h"

#include <QHash>
#include <QMultiHash>
#include <QString>

namespace ts::pm {

class FileProxyConnection;

class FileProxyServerPrivate
{
public:
    explicit FileProxyServerPrivate(FileProxyServer *q);

    FileProxyServer *const q;
    QHash<unsigned int, FileProxyConnection *> connections; // by id
    QHash<QString, IFileProxy *> providers;                 // by key, not owned

    // Ids of the connections that wait for a file, by target: one that resolves need not look at all others.
    // A connection that has told its client of an error by itself stays, and may wait for another by now.
    QMultiHash<QString, unsigned int> waiting;

    void resumeAcceptingSoon();
};

} // namespace ts::pm
