#include "pem_p.h"

#include <sodium.h>

#include <cstring>

namespace ts::crypto {

namespace {

QByteArray marker(const char *kind, const QByteArray &label)
{
    return QByteArray("-----") + kind + ' ' + label + "-----";
}

// The place behind the line that holds the begin marker and nothing else; -1 without such a line.
int behindBeginMarker(const QByteArray &pem, const QByteArray &begin)
{
    for (int at = pem.indexOf(begin); at >= 0; at = pem.indexOf(begin, at + 1)) {
        int end = at + begin.size();
        if (end < pem.size() && pem.at(end) == '\r')
            ++end;
        if ((at == 0 || pem.at(at - 1) == '\n') && end < pem.size() && pem.at(end) == '\n')
            return end + 1;
    }
    return -1;
}

} // namespace

bool readPem(const QByteArray &pem, const QByteArray &label, unsigned char *bytes, std::size_t size)
{
    const int start = behindBeginMarker(pem, marker("BEGIN", label));
    if (start < 0)
        return false;
    const int end = pem.indexOf('\n' + marker("END", label), start);
    if (end < 0)
        return false;
    const char *text = pem.constData() + start;
    const auto length = std::size_t(end - start);
    // libsodium takes a NUL for one of the characters that it is told to pass over.
    if (std::memchr(text, '\0', length))
        return false;
    std::size_t read = 0;
    return sodium_base642bin(bytes, size, text, length, "\r\n", &read, nullptr,
                             sodium_base64_VARIANT_ORIGINAL)
               == 0
           && read == size;
}

QByteArray writePem(const QByteArray &label, const unsigned char *bytes, std::size_t size)
{
    const auto length = sodium_base64_encoded_len(size, sodium_base64_VARIANT_ORIGINAL);
    QByteArray text(int(length), '\0');
    sodium_bin2base64(text.data(), length, bytes, size, sodium_base64_VARIANT_ORIGINAL);
    text.chop(1); // the terminating NUL
    const QByteArray pem = marker("BEGIN", label) + '\n' + text + '\n' + marker("END", label) + '\n';
    sodium_memzero(text.data(), std::size_t(text.size()));
    return pem;
}

} // namespace ts::crypto
