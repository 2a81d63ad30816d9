#pragma once

#include <QByteArray>
#include <QStringView>

class QJsonArray;
class QJsonObject;
class QJsonValue;

namespace ts::crypto {

/**
 * Writes one JSON object, or one string, in the canonical form of RFC 8785 into one buffer, without a copy in
 * between.
 *
 * Threads: one at a time.
 * Errors: a write that returns false has met what has no canonical form; what has been written until then is
 * of no use.
 */
class CanonicalJson
{
public:
    CanonicalJson();

    /** Goes on behind \a start. */
    explicit CanonicalJson(QByteArray &&start);

    bool write(const QJsonObject &object);
    bool writeString(QStringView text);
    QByteArray take();

private:
    bool writeValue(const QJsonValue &value);
    bool writeArray(const QJsonArray &array);
    bool writeDouble(double number);
    bool writeLiteral(const char *text, int size);

    bool reserve(qint64 bytes);
    void put(char c) { *to++ = c; }
    void putEscaped(ushort unit);

    QByteArray buffer;
    char *to;      // where the next byte goes
    int depth = 0; // objects and arrays that are being written
};

} // namespace ts::crypto
