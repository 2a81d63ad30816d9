#include "index/keyedhash_p.h"

#include <QRandomGenerator>

#include <cstring>

namespace ts::pm {

namespace {

template<typename Word>
quint64 read(const char *bytes)
{
    Word word;
    std::memcpy(&word, bytes, sizeof word);
    return word;
}

// Both halves of the product, folded into one: each bit of it depends on all bits of both factors.
quint64 mix(quint64 a, quint64 b)
{
#ifdef __SIZEOF_INT128__
    __extension__ using Product = unsigned __int128;
    const Product product = Product(a) * b;
    return quint64(product >> 64) ^ quint64(product);
#else
    const quint64 lowHigh = quint64(quint32(a)) * (b >> 32);
    const quint64 low = quint64(quint32(a)) * quint32(b);
    const quint64 middle = (a >> 32) * quint32(b) + quint32(lowHigh) + (low >> 32);
    const quint64 high = (a >> 32) * (b >> 32) + (lowHigh >> 32) + (middle >> 32);
    return high ^ (middle << 32 | quint32(low));
#endif
}

} // namespace

KeyedHash::KeyedHash()
    : firstSecret(QRandomGenerator::system()->generate64())
    , secondSecret(QRandomGenerator::system()->generate64())
{
}

quint64 KeyedHash::operator()(const QStringRef &text) const
{
    const size_t size = sizeof(QChar) * size_t(text.size());
    const char *bytes = reinterpret_cast<const char *>(text.unicode());
    size_t left = size;
    quint64 state = secondSecret;
    for (; left > 2 * sizeof(quint64); left -= 2 * sizeof(quint64), bytes += 2 * sizeof(quint64))
        state = mix(read<quint64>(bytes) ^ firstSecret, read<quint64>(bytes + sizeof(quint64)) ^ state);
    // The two words of the rest overlap unless it is full.
    quint64 front = 0;
    quint64 back = 0;
    if (left >= sizeof(quint64)) {
        front = read<quint64>(bytes);
        back = read<quint64>(bytes + left - sizeof(quint64));
    } else if (left >= sizeof(quint32)) {
        front = read<quint32>(bytes);
        back = read<quint32>(bytes + left - sizeof(quint32));
    } else if (left > 0) {
        front = read<quint16>(bytes);
    }
    return mix(mix(front ^ firstSecret, back ^ state), secondSecret ^ size);
}

} // namespace ts::pm
