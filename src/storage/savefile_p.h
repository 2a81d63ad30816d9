#pragma once

#include "testexport_p.h"

class QSaveFile;

namespace ts::pm {

/**
 * Commits \a file, and unlike QSaveFile::commit() alone also notices that its last bytes could not be
 * written: Qt 5 forgets an error that shows only when the buffer is flushed, as on a full disk, and puts a
 * short file in place.
 *
 * Returns false if the file at the target path is not the one that was written; error() and errorString() of
 * \a file say why, and its temporary file goes with it.
 */
[[nodiscard]] TAMSEL_TEST_EXPORT bool commitFlushed(QSaveFile &file);

} // namespace ts::pm
