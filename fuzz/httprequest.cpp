// What a client of the loopback server says: the first byte tells in pieces of which size it comes, and which
// requests are answered. What is understood does not depend on the pieces, and stays within its bounds.

#include "storage/fileproxyrequestreader_p.h"
#include "target.h"

#include <QBuffer>

#include <algorithm>
#include <vector>

using ts::fuzz::require;
using ts::pm::FileProxyRequestReader;

namespace {

constexpr int maxPieces = 200; // more take time and find nothing else

using Result = FileProxyRequestReader::Result;

struct Event
{
    Result result;
    int method;
    QByteArray target;
    QHash<QByteArray, QByteArray> headers;

    bool operator==(const Event &other) const
    {
        return result == other.result && method == other.method && target == other.target
               && headers == other.headers;
    }
};

void checkBounds(const FileProxyRequestReader &reader, const QIODevice &device, Result result)
{
    require(reader.state >= FileProxyRequestReader::RequestLine
                && reader.state <= FileProxyRequestReader::WaitingForFile,
            "the state is one of three");
    require((result == Result::Requested) <= (reader.state == FileProxyRequestReader::WaitingForFile),
            "a request waits for its file");
    require(reader.target.size() <= 4096 && !reader.target.contains('\n'), "a target is part of one line");
    require(reader.headers.size() <= FileProxyRequestReader::maxHeaders, "headers are bounded");
    for (auto it = reader.headers.begin(); it != reader.headers.end(); ++it)
        require(it.key().size() + it.value().size() < 4096, "a header is part of one line");
    require(result != Result::NeedsMore
                || (!device.canReadLine() && device.bytesAvailable() < FileProxyRequestReader::maxBuffered),
            "nothing is left that could be read");
}

std::vector<Event> understand(const QByteArray &said, int pieceSize, int answeredEvery)
{
    QBuffer device;
    device.open(QIODevice::ReadWrite);
    FileProxyRequestReader reader;
    std::vector<Event> events;
    for (int i = 0; i < said.size(); i += pieceSize) {
        device.buffer().append(said.constData() + i, std::min(pieceSize, said.size() - i));
        Result result = Result::Requested;
        while (result == Result::Requested) {
            result = reader.read(&device);
            checkBounds(reader, device, result);
            if (result == Result::NeedsMore)
                break;
            events.push_back({result, reader.method, reader.target, reader.headers});
            if (result != Result::Requested)
                return events; // the server closes
            if (int(events.size()) % answeredEvery == 0)
                reader.state = FileProxyRequestReader::RequestLine;
        }
    }
    return events;
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    if (size == 0)
        return 0;
    const QByteArray said = ts::fuzz::bytes(data + 1, size - 1);
    const int pieceSize = std::max(1 + (data[0] >> 1) * (data[0] >> 1), said.size() / maxPieces);
    const int answeredEvery = 1 + (data[0] & 1);
    require(understand(said, pieceSize, answeredEvery)
                == understand(said, std::max(1, said.size()), answeredEvery),
            "what is understood does not depend on the pieces");
    return 0;
}
