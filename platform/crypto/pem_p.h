#pragma once

#include <QByteArray>

#include <cstddef>

namespace ts::crypto {

/**
 * Reads exactly \a size bytes from the first PEM block with \a label in \a pem; false if there is no such
 * block, or if there is anything in it but the base64 text of that many bytes and line breaks.
 *
 * Makes no copies of what it reads: the bytes may be secret.
 */
bool readPem(const QByteArray &pem, const QByteArray &label, unsigned char *bytes, std::size_t size);

/** A PEM block with \a label, its base64 text in one line. */
QByteArray writePem(const QByteArray &label, const unsigned char *bytes, std::size_t size);

} // namespace ts::crypto
