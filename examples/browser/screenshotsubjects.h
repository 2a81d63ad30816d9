#pragma once

#include <TamselPackageManager/PackageRepository>

#include <QString>

namespace browser {

/** What the pictures show of a catalogue: examples that fit whatever catalogue it is. */
struct ScreenshotSubjects
{
    QString typed;      ///< the beginning of a word that the catalogue has
    QString unknown;    ///< a text that nothing in the catalogue contains
    QString categoryId; ///< a category that some packages have, but not all
    QString packageId;  ///< a package that requires another one, if there is one

    /** Empty texts where the catalogue has no example. */
    static ScreenshotSubjects find(const ts::pm::PackageRepository &repository);
};

} // namespace browser
