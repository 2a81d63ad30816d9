#include "canonicaltext_p.h"

#include <QtGlobal>

#include <algorithm>

namespace ts::crypto {

namespace {

constexpr int DeepestNesting = 32;
constexpr int MostDigits = 15;         // any such number is exact as a double
constexpr uint ByteOrderMark = 0xfeff; // QJsonDocument takes it off the beginning of a string

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

bool isBefore(const CanonicalText::Span &left, const CanonicalText::Span &right)
{
    return std::lexicographical_compare(left.begin, left.end, right.begin, right.end,
                                        [](char a, char b) { return uchar(a) < uchar(b); });
}

bool equals(const CanonicalText::Span &span, QLatin1String text)
{
    return QLatin1String(span.begin, int(span.end - span.begin)) == text;
}

// The bytes of a sequence, by the first of them; 0 if none begins so.
int sequenceSize(uchar lead)
{
    if (lead < 0xc2)
        return 0;
    if (lead < 0xe0)
        return 2;
    if (lead < 0xf0)
        return 3;
    return lead < 0xf5 ? 4 : 0;
}

// Whether a code point may stand in that many bytes: neither fewer would do, nor is it half of a pair.
bool isValid(uint point, int size)
{
    if (size == 3)
        return point >= 0x800 && (point < 0xd800 || point > 0xdfff) && point != ByteOrderMark;
    return size == 2 || (point >= 0x10000 && point <= 0x10ffff);
}

} // namespace

CanonicalText::CanonicalText(const char *text, int size)
    : at(text)
    , end(text + size)
{
}

bool CanonicalText::isObject(QLatin1String key)
{
    return take('{') && readMembers(key) && at == end;
}

bool CanonicalText::take(char c)
{
    if (at == end || *at != c)
        return false;
    ++at;
    return true;
}

bool CanonicalText::readValue()
{
    if (at == end || depth == DeepestNesting)
        return false;
    switch (*at) {
    case '"': {
        Key string;
        return readString(&string);
    }
    case '{':
        return readObject();
    case '[':
        return readArray();
    case 't':
        return readLiteral(QLatin1String("true"));
    case 'f':
        return readLiteral(QLatin1String("false"));
    case 'n':
        return readLiteral(QLatin1String("null"));
    default:
        return readNumber();
    }
}

bool CanonicalText::readObject()
{
    ++depth;
    const bool read = take('{') && readMembers(QLatin1String());
    --depth;
    return read;
}

// Members and the closing brace. Keys ascend, so that none is there twice.
bool CanonicalText::readMembers(QLatin1String wanted)
{
    if (take('}'))
        return true;
    Key previous;
    do {
        Key key;
        const char *begin = at;
        if (!readString(&key) || !key.isComparable || !take(':') || !readValue())
            return false;
        if (previous.text.begin && !isBefore(previous.text, key.text))
            return false;
        if (!wanted.isNull() && equals(key.text, wanted))
            found = {begin, at};
        previous = key;
    } while (take(','));
    return take('}');
}

bool CanonicalText::readArray()
{
    ++depth;
    bool read = take('[');
    if (read && !take(']')) {
        do {
            read = readValue();
        } while (read && take(','));
        read = read && take(']');
    }
    --depth;
    return read;
}

bool CanonicalText::readString(Key *string)
{
    if (!take('"'))
        return false;
    string->text.begin = at;
    while (at != end) {
        const auto byte = uchar(*at);
        if (byte == '"') {
            string->text.end = at++;
            return true;
        }
        if (byte < ' ' || byte == '\\')
            return false;
        if (byte < 0x80)
            ++at;
        else if (!readSequence(string))
            return false;
    }
    return false;
}

// One code point in several bytes of UTF-8.
bool CanonicalText::readSequence(Key *string)
{
    const int size = sequenceSize(uchar(*at));
    if (size == 0 || end - at < size)
        return false;
    uint point = uchar(*at) & (0xffU >> (size + 1));
    for (int i = 1; i < size; ++i) {
        if ((uchar(at[i]) & 0xc0) != 0x80)
            return false;
        point = (point << 6) | (uchar(at[i]) & 0x3f);
    }
    if (size == 4)
        string->isComparable = false; // surrogates come before the end of the basic plane
    at += size;
    return isValid(point, size);
}

bool CanonicalText::readNumber()
{
    const bool isNegative = take('-');
    const char *digits = at;
    while (at != end && isDigit(*at))
        ++at;
    const auto count = at - digits;
    if (count == 0 || count > MostDigits)
        return false;
    return *digits != '0' || (count == 1 && !isNegative);
}

bool CanonicalText::readLiteral(QLatin1String literal)
{
    if (end - at < literal.size() || !std::equal(literal.begin(), literal.end(), at))
        return false;
    at += literal.size();
    return true;
}

} // namespace ts::crypto
