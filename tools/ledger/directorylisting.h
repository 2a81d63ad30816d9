#pragma once

#include "ledger/problems.h"

#include <QString>
#include <QVector>

namespace ts::ledger {

struct DirectoryEntry
{
    enum Kind { Directory, File, Other };

    QString name;
    QString path; ///< absolute
    Kind kind = Other;
};

/**
 * Lists the directories of one tree, strictly: what cannot be published, or what lies outside of the tree, is
 * an error and not passed over. One thread.
 */
class DirectoryListing
{
public:
    /** \a root need not exist. \a problems takes the errors, and has to outlive this. */
    DirectoryListing(const QString &root, Problems &problems);

    /** The entries of \a directory, which lies in the tree, by name. Hidden ones are left out. */
    QVector<DirectoryEntry> entries(const QString &directory) const;

    /** How messages call \a path: relative to the root. */
    QString placeOf(const QString &path) const;

private:
    bool isInside(const QString &path) const;

    const QString root; // canonical
    Problems &problems;
};

} // namespace ts::ledger
