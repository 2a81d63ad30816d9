#pragma once

#include <QByteArray>
#include <QtGlobal>

#include <vector>

namespace ts::pm::bench {

/** One connection to an HTTP server on the loopback interface, over a blocking socket. */
class LoopbackClient
{
public:
    explicit LoopbackClient(quint16 port);
    LoopbackClient(LoopbackClient &&other) noexcept;
    ~LoopbackClient();

    bool isConnected() const { return descriptor >= 0; }

    bool send(const QByteArray &request);

    /** Reads one answer to its end and returns the size of its body; -1 if it is cut short or is no success.
     */
    qint64 receive();

private:
    LoopbackClient(const LoopbackClient &) = delete;
    LoopbackClient &operator=(const LoopbackClient &) = delete;

    int descriptor;
    std::vector<char> buffer;
};

} // namespace ts::pm::bench
