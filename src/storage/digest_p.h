#pragma once

#include "testexport_p.h"

#include <QByteArray>
#include <QCryptographicHash>

namespace ts::pm {

/**
 * The result of QCryptographicHash::hash(), in a fraction of the time: libcrypto computes a SHA-224 about
 * eight times as fast, which counts where whole files are verified on the user interface's thread. Any
 * thread.
 */
TAMSEL_TEST_EXPORT QByteArray digest(const QByteArray &data, QCryptographicHash::Algorithm algorithm);

} // namespace ts::pm
