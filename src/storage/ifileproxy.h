#pragma once

#include "tamselpackagemanager_export.h"

class QUrl;

namespace ts::pm {

/**
 * A provider of files for the FileProxyServer.
 *
 * Ownership: the server does not own its providers; a provider uninstalls itself before it goes.
 * Threads: the thread of the server.
 */
class TAMSELPACKAGEMANAGER_EXPORT IFileProxy
{
public:
    virtual ~IFileProxy();

    /**
     * Somebody asks for \a url, a relative URL below the provider's key. The provider answers through
     * FileProxyServer::resolveFile() with that same URL, at once or later.
     */
    virtual void requestFile(const QUrl &url) = 0;

protected:
    IFileProxy();

private:
    IFileProxy(const IFileProxy &) = delete;
    IFileProxy &operator=(const IFileProxy &) = delete;
};

} // namespace ts::pm
