#include "canonicaljson_p.h"

#include "ecmascriptnumber_p.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QVarLengthArray>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <utility>

namespace ts::crypto {

namespace {

constexpr int UsualSize = 512; // bytes; most package statements fit
constexpr int LongestUnit = 6; // bytes that one UTF-16 code unit takes at most: \u001f

// QJsonDocument reads 1024 levels, and what it has read may be wrapped a few times. Deeper objects can only
// have been made in code; they have no canonical form, because writing them takes stack for each level.
constexpr int DeepestNesting = 1536;

struct Member
{
    QString key;
    QJsonObject::const_iterator place;
};

bool operator<(const Member &left, const Member &right)
{
    return left.key < right.key; // QString compares UTF-16 code units
}

using Members = QVarLengthArray<Member, 12>;

bool isStrictlyAscending(const Members &members)
{
    const auto notBefore = [](const Member &left, const Member &right) { return !(left < right); };
    return std::adjacent_find(members.cbegin(), members.cend(), notBefore) == members.cend();
}

// False if two keys are equal. Qt 5.15 keeps both when the text wrote one of them with an escape and the
// other one without, and a third key came in between.
bool sortMembers(Members *members)
{
    // QJsonObject has an order of its own, which is rarely another one.
    if (isStrictlyAscending(*members))
        return true;
    std::sort(members->begin(), members->end());
    return isStrictlyAscending(*members);
}

Members membersOf(const QJsonObject &object)
{
    Members members;
    members.reserve(object.size());
    for (auto it = object.constBegin(); it != object.constEnd(); ++it)
        members.append({it.key(), it});
    return members;
}

char *putTwoBytes(char *to, ushort unit)
{
    *to++ = char(0xc0 | (unit >> 6));
    *to++ = char(0x80 | (unit & 0x3f));
    return to;
}

char *putThreeBytes(char *to, ushort unit)
{
    *to++ = char(0xe0 | (unit >> 12));
    *to++ = char(0x80 | ((unit >> 6) & 0x3f));
    *to++ = char(0x80 | (unit & 0x3f));
    return to;
}

char *putFourBytes(char *to, uint point)
{
    *to++ = char(0xf0 | (point >> 18));
    *to++ = char(0x80 | ((point >> 12) & 0x3f));
    *to++ = char(0x80 | ((point >> 6) & 0x3f));
    *to++ = char(0x80 | (point & 0x3f));
    return to;
}

} // namespace

CanonicalJson::CanonicalJson()
    : buffer(UsualSize, Qt::Uninitialized)
    , to(buffer.data())
{
}

CanonicalJson::CanonicalJson(QByteArray &&start)
    : buffer(std::move(start))
    , to(buffer.data() + buffer.size())
{
}

QByteArray CanonicalJson::take()
{
    buffer.resize(int(to - buffer.constData()));
    return std::move(buffer);
}

// Room for \a bytes more; false beyond what a QByteArray holds.
bool CanonicalJson::reserve(qint64 bytes)
{
    const qint64 used = to - buffer.constData();
    const qint64 wanted = used + bytes;
    if (wanted <= buffer.size())
        return true;
    constexpr qint64 most = std::numeric_limits<int>::max() - 64; // QByteArray keeps a header and a NUL
    if (wanted > most)
        return false;
    const qint64 room = std::max(qint64(buffer.size()) * 2, qint64(buffer.capacity()));
    buffer.resize(int(std::min(most, std::max(wanted, room))));
    to = buffer.data() + used;
    return true;
}

bool CanonicalJson::write(const QJsonObject &object)
{
    if (++depth > DeepestNesting || !reserve(1))
        return false;
    put('{');
    bool first = true;
    Members members = membersOf(object);
    if (!sortMembers(&members))
        return false;
    for (const Member &member : std::as_const(members)) {
        if (!reserve(1))
            return false;
        if (!first)
            put(',');
        first = false;
        if (!writeString(member.key) || !reserve(1))
            return false;
        put(':');
        if (!writeValue(member.place.value()))
            return false;
    }
    --depth;
    if (!reserve(1))
        return false;
    put('}');
    return true;
}

bool CanonicalJson::writeArray(const QJsonArray &array)
{
    if (++depth > DeepestNesting || !reserve(1))
        return false;
    put('[');
    bool first = true;
    for (const QJsonValue &value : array) {
        if (!reserve(1))
            return false;
        if (!first)
            put(',');
        first = false;
        if (!writeValue(value))
            return false;
    }
    --depth;
    if (!reserve(1))
        return false;
    put(']');
    return true;
}

bool CanonicalJson::writeValue(const QJsonValue &value)
{
    switch (value.type()) {
    case QJsonValue::Null:
        return writeLiteral("null", 4);
    case QJsonValue::Bool:
        return value.toBool() ? writeLiteral("true", 4) : writeLiteral("false", 5);
    case QJsonValue::Double:
        return writeDouble(value.toDouble());
    case QJsonValue::String:
        return writeString(value.toString());
    case QJsonValue::Array:
        return writeArray(value.toArray());
    case QJsonValue::Object:
        return write(value.toObject());
    case QJsonValue::Undefined:
        break;
    }
    return false;
}

bool CanonicalJson::writeLiteral(const char *text, int size)
{
    if (!reserve(size))
        return false;
    std::memcpy(to, text, std::size_t(size));
    to += size;
    return true;
}

bool CanonicalJson::writeDouble(double number)
{
    if (!std::isfinite(number) || !reserve(LongestNumber))
        return false;
    to = writeNumber(to, number);
    return true;
}

bool CanonicalJson::writeString(QStringView text)
{
    if (!reserve(qint64(text.size()) * LongestUnit + 2))
        return false;
    put('"');
    for (const QChar *at = text.cbegin(); at != text.cend(); ++at) {
        const ushort unit = at->unicode();
        if (unit < 0x80) {
            if (unit < ' ' || unit == '"' || unit == '\\')
                putEscaped(unit);
            else
                put(char(unit));
        } else if (unit < 0x800) {
            to = putTwoBytes(to, unit);
        } else if (!at->isSurrogate()) {
            to = putThreeBytes(to, unit);
        } else {
            if (!at->isHighSurrogate() || at + 1 == text.cend() || !at[1].isLowSurrogate())
                return false;
            to = putFourBytes(to, QChar::surrogateToUcs4(at[0], at[1]));
            ++at;
        }
    }
    put('"');
    return true;
}

void CanonicalJson::putEscaped(ushort unit)
{
    // The letters of the escapes \b \t \n \f \r, by code; a zero is written as \u00XX.
    static constexpr char letters[] = {0, 0, 0, 0, 0, 0, 0, 0, 'b', 't', 'n', 0, 'f', 'r'};
    const char letter = unit >= ' ' ? char(unit) : unit < sizeof letters ? letters[unit] : char(0);
    put('\\');
    if (letter) {
        put(letter);
        return;
    }
    std::memcpy(to, "u00", 3);
    to += 3;
    put(char('0' + (unit >> 4)));
    put("0123456789abcdef"[unit & 0xf]);
}

} // namespace ts::crypto
