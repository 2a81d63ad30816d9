#pragma once

#include "server/packageledger.h"

#include <QtEndian>

namespace ts::pm {

/**
 * Reads the fields of a ledger one after the other, between a cursor and the end of its section.
 *
 * A field that does not fit stops nothing: it comes out as 0 or null, and the caller decides whether that
 * matters. Each read says whether it succeeded; a result that is not looked at is one that does not matter.
 * Nothing behind the end is read, and no field has to be aligned.
 */
class LedgerCursor
{
public:
    LedgerCursor(const char **cursor, const char *end)
        : cursor(cursor)
        , end(end)
    {
    }

    /** A little-endian number. */
    template<typename Integer>
    bool read(Integer *value)
    {
        const char *bytes = take(int(sizeof(Integer)));
        *value = bytes ? qFromLittleEndian<Integer>(bytes) : Integer(0);
        return bytes != nullptr;
    }

    /** A signature or a digest, by its place. */
    bool read(const unsigned char **block, int size)
    {
        *block = reinterpret_cast<const unsigned char *>(take(size));
        return *block != nullptr;
    }

    /** A text. If its body does not fit, the cursor stays between its length and its body. */
    bool read(Utf8String *string)
    {
        *string = Utf8String();
        quint16 length = 0;
        if (!read(&length))
            return false;
        string->data = take(length);
        if (!string->data)
            return false;
        string->length = length;
        return true;
    }

    /** No more than \a count, nor than there can be records of at least \a size bytes up to the end: what may
     * be reserved for a count that nobody has checked. */
    int plausible(quint32 count, int size) const
    {
        const auto room = quint64(end - *cursor) / quint64(size);
        return int(qMin(quint64(count), room));
    }

private:
    const char *take(int size)
    {
        if (end - *cursor < size)
            return nullptr;
        const char *bytes = *cursor;
        *cursor += size;
        return bytes;
    }

    const char **const cursor;
    const char *const end;
};

} // namespace ts::pm
