#pragma once

#include "tamselcrypto_export.h"

class QByteArray;
class QJsonObject;

namespace ts::crypto {

/**
 * The bytes of a JSON object that are signed.
 *
 * Threads: any thread. Errors: an object without canonical form (a lone surrogate in a text or a key, a
 * number that is not finite, two equal keys, which QJsonDocument lets pass at times) gives a null array;
 * nobody signs or verifies that. So does one that is nested more than 1536 levels deep, half as deep again as
 * QJsonDocument reads.
 */
class TAMSELCRYPTO_EXPORT JsonSignature
{
public:
    /**
     * The canonical form of RFC 8785: keys in the order of their UTF-16 code units, no white space, numbers
     * as ECMAScript prints them, UTF-8 without a byte order mark.
     */
    static QByteArray toByteArray(const QJsonObject &object);
};

} // namespace ts::crypto
