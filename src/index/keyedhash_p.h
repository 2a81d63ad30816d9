#pragma once

#include <QStringRef>

namespace ts::pm {

/**
 * A hash of texts that strangers may have chosen, keyed by a secret of each object.
 *
 * qHash() mixes its seed into the result only: texts of one length that collide with one seed collide with
 * all, and can be found beforehand. Here the secret takes part in every step.
 *
 * Threads: immutable, any thread.
 */
class KeyedHash
{
public:
    KeyedHash();

    quint64 operator()(const QStringRef &text) const;

private:
    quint64 firstSecret;
    quint64 secondSecret;
};

} // namespace ts::pm
