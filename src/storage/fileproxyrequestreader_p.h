#pragma once

#include "testexport_p.h"

#include <QByteArray>
#include <QHash>

class QIODevice;

namespace ts::pm {

/**
 * Reads the requests of one client of the FileProxyServer, line by line.
 *
 * A line ends in a line feed. One of more than 4,096 bytes comes in pieces of that size, each of which counts
 * as a line; that happens when its end is there, or when the device holds maxBuffered bytes without one,
 * since a client that never ends its line would otherwise fill the memory or stay forever.
 *
 * Headers are kept and not interpreted, from one request of a connection to the next. Of the names that a
 * client makes up only the first maxHeaders are kept.
 *
 * Threads: the thread of the server.
 */
class TAMSEL_TEST_EXPORT FileProxyRequestReader
{
public:
    enum State { RequestLine = 0, HeaderLines = 1, WaitingForFile = 2 };
    enum Method { Get = 0, Head = 1 };
    enum class Result { NeedsMore, Requested, BadRequest, MethodNotAllowed };

    static constexpr int maxBuffered = 64 * 1024;
    static constexpr int maxHeaders = 100;

    /** Takes lines of \a device until a request is complete, one breaks the protocol, or more are needed. */
    Result read(QIODevice *device);

    int state = RequestLine;
    int method = Get;
    QByteArray target; // as it stood on the request line
    QHash<QByteArray, QByteArray> headers;

private:
    Result handleLine(const QByteArray &line);
    Result handleRequestLine(const QByteArray &line);
    Result handleHeaderLine(const QByteArray &line);
};

} // namespace ts::pm
