#include "storage/fileproxyrequestreader_p.h"

#include <QIODevice>

namespace ts::pm {

namespace {

constexpr int maxLine = 4096;

bool hasLine(const QIODevice *device)
{
    return device->canReadLine() || device->bytesAvailable() >= FileProxyRequestReader::maxBuffered;
}

} // namespace

FileProxyRequestReader::Result FileProxyRequestReader::read(QIODevice *device)
{
    char buffer[maxLine + 1]; // readLine() ends it with a NUL
    while (hasLine(device)) {
        const auto size = int(device->readLine(buffer, sizeof buffer));
        if (size <= 0)
            return Result::NeedsMore;
        const Result result = handleLine(QByteArray::fromRawData(buffer, size));
        if (result != Result::NeedsMore)
            return result;
    }
    return Result::NeedsMore;
}

// What is kept of a line is copied: its bytes are gone with the next one.
FileProxyRequestReader::Result FileProxyRequestReader::handleLine(const QByteArray &line)
{
    switch (state) {
    case RequestLine:
        return handleRequestLine(line);
    case HeaderLines:
        return handleHeaderLine(line);
    default:
        return Result::BadRequest; // a further request before the answer
    }
}

// Blanks are counted exactly: two in a row after the method make a target that starts with a blank.
FileProxyRequestReader::Result FileProxyRequestReader::handleRequestLine(const QByteArray &line)
{
    const QByteArray trimmed = line.trimmed();
    const int first = trimmed.indexOf(' ');
    const int last = trimmed.lastIndexOf(' ');
    if (first == last)
        return Result::BadRequest;
    if (trimmed.mid(last + 1) != "HTTP/1.1")
        return Result::BadRequest;
    const QByteArray name = trimmed.left(first);
    if (name != "GET" && name != "HEAD")
        return Result::MethodNotAllowed;
    method = name == "GET" ? Get : Head;
    target = trimmed.mid(first + 1, last - first - 1);
    state = HeaderLines;
    return Result::NeedsMore;
}

FileProxyRequestReader::Result FileProxyRequestReader::handleHeaderLine(const QByteArray &line)
{
    if (line == "\r\n") {
        state = WaitingForFile;
        return Result::Requested;
    }
    const int colon = line.indexOf(':');
    if (colon < 0)
        return Result::NeedsMore;
    const QByteArray key = line.left(colon);
    if (headers.size() < maxHeaders || headers.contains(key))
        headers.insert(key, line.mid(colon + 1).trimmed());
    return Result::NeedsMore;
}

} // namespace ts::pm
