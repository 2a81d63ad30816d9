#pragma once

#include <QtGlobal>

#include <functional>
#include <memory>

struct z_stream_s;

namespace ts {

/**
 * Decompresses a gzip stream as it arrives, in steps of bounded size: a small input that grows without end is
 * handed on piece by piece and never held as a whole.
 */
class Inflater
{
public:
    /** Takes a piece of the result; false stops. */
    using Consumer = std::function<bool(const char *bytes, int size)>;

    Inflater();
    ~Inflater();

    /** Hands what comes of \a bytes to \a consumer; false if they are no gzip stream, or if that stops. */
    bool add(const char *bytes, int size, const Consumer &consumer);

    /** True at the end of a stream, behind its check sum. */
    bool isComplete() const { return complete; }

private:
    Q_DISABLE_COPY(Inflater)

    const std::unique_ptr<z_stream_s> stream;
    bool usable = false;
    bool complete = false;
};

} // namespace ts
