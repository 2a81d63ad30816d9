#pragma once

#include "testexport_p.h"

#include <QUrl>

namespace ts::pm {

/**
 * The URL of the document \a id, with a "/" at its end. Whatever characters the id has, it is one segment of
 * the path. Empty for an id that no segment can stand for: "", "." and "..".
 */
TAMSEL_TEST_EXPORT QUrl documentUrl(const QUrl &database, const QString &id);

/**
 * The URL of the attachment \a name, below that of its document and nowhere else, whatever characters the
 * name has. Empty for a name that cannot be told in a URL, and for an empty \a document.
 */
TAMSEL_TEST_EXPORT QUrl attachmentUrl(const QUrl &document, const QString &name);

} // namespace ts::pm
