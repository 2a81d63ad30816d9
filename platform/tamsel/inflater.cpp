#include "inflater_p.h"

#include <zlib.h>

#include <array>

namespace ts {

namespace {

constexpr int GzipOnly = 15 + 16; // the largest window; a gzip header is expected
constexpr int StepSize = 64 * 1024;

} // namespace

Inflater::Inflater()
    : stream(std::make_unique<z_stream>())
    , usable(inflateInit2(stream.get(), GzipOnly) == Z_OK)
{
}

Inflater::~Inflater()
{
    inflateEnd(stream.get());
}

bool Inflater::add(const char *bytes, int size, const Consumer &consumer)
{
    stream->next_in = const_cast<Bytef *>(reinterpret_cast<const Bytef *>(bytes));
    stream->avail_in = uInt(size);
    std::array<char, StepSize> output; // NOLINT(cppcoreguidelines-pro-type-member-init): zlib fills it
    do {
        // A gzip file may consist of several streams, one behind the other.
        if (complete && stream->avail_in > 0)
            usable = inflateReset(stream.get()) == Z_OK;
        stream->next_out = reinterpret_cast<Bytef *>(output.data());
        stream->avail_out = StepSize;
        const int result = usable ? inflate(stream.get(), Z_NO_FLUSH) : Z_STREAM_ERROR;
        usable = result == Z_OK || result == Z_STREAM_END || result == Z_BUF_ERROR;
        if (!usable)
            return false;
        complete = result == Z_STREAM_END;
        const int produced = StepSize - int(stream->avail_out);
        if (produced > 0 && !consumer(output.data(), produced))
            return false;
    } while (stream->avail_in > 0 || stream->avail_out == 0);
    return true;
}

} // namespace ts
