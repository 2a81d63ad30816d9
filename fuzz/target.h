#pragma once

#include <QByteArray>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

/** What each fuzzer defines: looks at one input; what must never be ends the process. */
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size);

namespace ts::fuzz {

/** The input without a copy. It is not terminated, and a read behind its end is found. */
inline QByteArray bytes(const std::uint8_t *data, std::size_t size)
{
    return QByteArray::fromRawData(reinterpret_cast<const char *>(data), int(size));
}

/** Ends the process, in release builds as well, if \a condition does not hold. */
inline void require(bool condition, const char *text)
{
    if (condition)
        return;
    std::fprintf(stderr, "does not hold: %s\n", text);
    std::abort();
}

} // namespace ts::fuzz
