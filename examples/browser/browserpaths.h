#pragma once

#include <QStringList>

namespace browser {

struct BrowserOptions;

// Where things are, seen from the executable, in a build tree as well as where it has been installed. Both
// need an application object.

/** The directories that \a options name, or that of the sample catalogue, as absolute paths. */
QStringList cataloguesFor(const BrowserOptions &options);

/** Where the QML module Tamsel.PackageManager may be. */
QStringList qmlImportPaths();

} // namespace browser
