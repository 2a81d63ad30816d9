#pragma once

#include "testexport_p.h"

#include <QString>
#include <QVector>

namespace ts::pm {

struct PackageEntry;

/** A file of a package as its issuer has signed it. */
struct PackageFile
{
    QString path;
    const unsigned char *digest = nullptr; ///< 28 bytes, in the ledger
};

/**
 * The files of a package in the order of their paths, no path twice.
 *
 * A ledger may spell one path in several ways: by a NUL, behind which nothing counts, or by bytes that are no
 * UTF-8. Then the spelling that is the path itself counts, in its absence the first in the order of bytes.
 * The others are in no statement that an issuer signs, so nobody may fetch or install anything by them.
 */
TAMSEL_TEST_EXPORT QVector<PackageFile> packageFiles(const PackageEntry &package);

/** The digest of one of these files by its path, or null if there is none. */
TAMSEL_TEST_EXPORT const unsigned char *fileDigest(const PackageEntry &package, const QString &path);

} // namespace ts::pm

Q_DECLARE_TYPEINFO(ts::pm::PackageFile, Q_MOVABLE_TYPE);
