#pragma once

#include "tamselcrypto_export.h"

#include <QByteArray>
#include <QLatin1String>
#include <QStringView>

class QJsonObject;

namespace ts::crypto {

/**
 * The bytes of a JSON object that are signed.
 *
 * Threads: any thread.
 * Errors: an object without canonical form (a lone surrogate in a text or a key, a number that is not finite,
 * two equal keys, which QJsonDocument lets pass at times) gives a null array; nobody signs or verifies that.
 * So does one that is nested more than 1536 levels deep, half as deep again as QJsonDocument reads.
 */
class TAMSELCRYPTO_EXPORT JsonSignature
{
public:
    /**
     * The canonical form of RFC 8785: keys in the order of their UTF-16 code units, no white space, numbers
     * as ECMAScript prints them, UTF-8 without a byte order mark.
     */
    static QByteArray toByteArray(const QJsonObject &object);

    /**
     * The canonical form of the JSON object in \a json without its member \a key, an ASCII text. What is no
     * object counts as an empty one.
     *
     * The result is that of parsing the text, removing the member and writing the rest; but a text that is in
     * canonical form already, as publishers usually write it, is only looked through, which takes a small
     * part of the time.
     */
    static QByteArray toByteArray(const QByteArray &json, QLatin1String key);

    /**
     * Appends a JSON string with that text, in quotes, to \a json. False, and \a json as it was, if a
     * surrogate stands alone in the text, or if both together could be more than a QByteArray holds.
     */
    [[nodiscard]] static bool appendString(QStringView text, QByteArray *json);
};

} // namespace ts::crypto
