#pragma once

#include <QStringList>

namespace browser {

struct BrowserOptions;

// Where things are, seen from the executable, in a build tree as well as where it has been installed. Both
// need an application object.

/** The directories that \a options name, as absolute paths; if they name no place at all, that of the sample
 * catalogue. */
QStringList cataloguesFor(const BrowserOptions &options);

/** Where the QML module Tamsel.PackageManager may be. */
QStringList qmlImportPaths();

} // namespace browser
