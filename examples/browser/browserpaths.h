#pragma once

#include <QStringList>
#include <QUrl>

namespace browser {

struct BrowserOptions;

// Where things are, seen from the executable, in a build tree as well as where it has been installed, and how
// places are named. All but displayed() need an application object.

/** The directories that \a options name, as absolute paths; if they name no place at all, that of the sample
 * catalogue. */
QStringList cataloguesFor(const BrowserOptions &options);

/** Where the QML module Tamsel.PackageManager may be. */
QStringList qmlImportPaths();

/** The form of \a url for eyes: without the user and the password that may be part of it. */
QString displayed(const QUrl &url);

} // namespace browser
