#pragma once

#include "ledger/problems.h"

#include <TamselCrypto/PrivateKey>
#include <TamselCrypto/PublicKey>

#include <QString>

namespace ts::ledger {

/** Keys in files, in PEM. Any thread. */
class KeyFile
{
public:
    /** Warns if others than the owner can read the file. Unusable, with an error, if it holds no key. */
    static crypto::ed25519::PrivateKey readPrivate(const QString &path, Problems &problems);

    /** Unusable, with an error, if the file holds no key. */
    static crypto::ed25519::PublicKey readPublic(const QString &path, Problems &problems);

    /** Whether the file holds a private key, of whatever kind. */
    static bool isPrivate(const QString &path);

    /**
     * Writes a new file that only the owner can read, from the first moment on. It appears whole or not at
     * all, and never in the place of another file. Null, or what went wrong.
     */
    static QString writePrivate(const QString &path, const crypto::ed25519::PrivateKey &key);

    /** As writePrivate(), but for everybody to read. */
    static QString writePublic(const QString &path, const crypto::ed25519::PublicKey &key);

    /** The public key of the root that the library of this build believes. */
    static crypto::ed25519::PublicKey builtInRoot();
};

} // namespace ts::ledger
