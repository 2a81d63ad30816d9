// Any bytes as a gzip stream: what comes out does not depend on how the bytes arrive.

#include "target.h"

#include "../platform/tamsel/inflater_p.h"

#include <algorithm>

namespace {

constexpr int LargestResult = 1 << 20; // what the consumer takes before it stops

struct Result
{
    QByteArray bytes;
    bool good = true;
    bool complete = false;
};

Result inflated(const QByteArray &input, int step)
{
    Result result;
    ts::Inflater inflater;
    const auto consume = [&result](const char *bytes, int size) {
        result.bytes.append(bytes, size);
        return result.bytes.size() < LargestResult;
    };
    for (int at = 0; at < input.size() && result.good; at += step)
        result.good = inflater.add(input.constData() + at, std::min(step, input.size() - at), consume);
    result.complete = inflater.isComplete();
    return result;
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray input = ts::fuzz::bytes(data, size);
    const Result whole = inflated(input, std::max(1, input.size()));
    const Result pieces = inflated(input, 3);
    ts::fuzz::require(whole.good == pieces.good, "good as a whole, good in pieces");
    if (whole.good) {
        ts::fuzz::require(whole.bytes == pieces.bytes, "the same result");
        ts::fuzz::require(whole.complete == pieces.complete, "the same end");
    }
    return 0;
}
