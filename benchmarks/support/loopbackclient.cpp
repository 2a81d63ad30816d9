#include "support/loopbackclient.h"

#include <arpa/inet.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <string_view>

namespace ts::pm::bench {

namespace {

constexpr std::size_t bufferSize = 256 * 1024;

int connectTo(quint16 port)
{
    const int descriptor = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    if (::connect(descriptor, reinterpret_cast<const sockaddr *>(&address), sizeof address) == 0)
        return descriptor;
    ::close(descriptor);
    return -1;
}

} // namespace

LoopbackClient::LoopbackClient(quint16 port)
    : descriptor(connectTo(port))
    , buffer(bufferSize)
{
}

LoopbackClient::LoopbackClient(LoopbackClient &&other) noexcept
    : descriptor(std::exchange(other.descriptor, -1))
    , buffer(std::move(other.buffer))
{
}

LoopbackClient::~LoopbackClient()
{
    if (descriptor >= 0)
        ::close(descriptor);
}

bool LoopbackClient::send(const QByteArray &request)
{
    return ::send(descriptor, request.constData(), size_t(request.size()), MSG_NOSIGNAL) == request.size();
}

qint64 LoopbackClient::receive()
{
    constexpr std::string_view headEnd = "\r\n\r\n";
    constexpr std::string_view lengthKey = "\r\nContent-Length: ";
    std::size_t filled = 0;
    std::size_t end = std::string_view::npos;
    while (end == std::string_view::npos) {
        const ssize_t received = ::recv(descriptor, buffer.data() + filled, buffer.size() - filled, 0);
        if (received <= 0)
            return -1;
        filled += size_t(received);
        end = std::string_view(buffer.data(), filled).find(headEnd);
    }
    const std::string_view head(buffer.data(), end + headEnd.size());
    const std::size_t length = head.find(lengthKey);
    if (head.substr(0, 12) != "HTTP/1.1 200" || length == std::string_view::npos)
        return -1;
    const qint64 size = std::atoll(head.data() + length + lengthKey.size());
    qint64 left = size - qint64(filled - head.size());
    while (left > 0) {
        const size_t wanted = std::min(size_t(left), buffer.size());
        const ssize_t received = ::recv(descriptor, buffer.data(), wanted, 0);
        if (received <= 0)
            return -1;
        left -= received;
    }
    return left == 0 ? size : -1;
}

} // namespace ts::pm::bench
