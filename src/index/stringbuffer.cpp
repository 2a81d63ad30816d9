#include "index/stringbuffer_p.h"

namespace ts::pm {

namespace {

constexpr int largestBuffer = 1000000000; // characters, close to what a QString can hold

} // namespace

StringBuffer::StringBuffer()
    : lookup(new QHash<QString, QStringRef>)
{
}

StringBuffer::~StringBuffer() = default;

QStringRef StringBuffer::addString(const QString &string)
{
    if (!lookup || string.isEmpty() || string.size() > largestBuffer - buffer.size())
        return QStringRef();
    const auto known = lookup->constFind(string);
    if (known != lookup->constEnd())
        return *known;
    const int position = buffer.size();
    buffer += string;
    return QStringRef(&buffer, position, string.size());
}

void StringBuffer::close()
{
    lookup.reset();
    buffer.squeeze();
}

} // namespace ts::pm
