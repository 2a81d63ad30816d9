#pragma once

#include <QString>

namespace ts::pm::test {

inline QString operator""_s(const char *text, std::size_t size)
{
    return QString::fromUtf8(text, int(size));
}

} // namespace ts::pm::test
