#pragma once

#include "database/listingfile_p.h"
#include "testexport_p.h"

#include <QByteArray>
#include <QDir>
#include <QLoggingCategory>

namespace ts::pm {

/** A function that Q_LOGGING_CATEGORY has made. */
using LogCategory = const QLoggingCategory &(*)();

/** The MD5 of \a content in hexadecimal digits, which tells listings and databases apart. Any thread. */
QByteArray hexMd5(const QByteArray &content);

/**
 * The listing that a source has now, and the directory in which it survives a restart: as one file that is
 * named after the MD5 of its content, with ".lock" beside it.
 *
 * Threads: repository thread only. The directory is process-wide, locked by file while it is written:
 * persist() waits for as long as another process holds the lock.
 * Errors: logged in the category of the source.
 */
class TAMSEL_TEST_EXPORT PersistedListing
{
public:
    /**
     * \a path is that of the directory below the data location, and begins with "packages/". One that would
     * leave "packages" is not used: nothing is persisted then. Touches no disk.
     */
    PersistedListing(LogCategory category, const QString &path);

    /**
     * Makes the newest file of the directory the current listing. Returns false if there is none, or if its
     * content is not what its name says; then it is removed and there is no current listing.
     *
     * Only the newest is looked at. One that cannot be opened is removed as well, but stays the current
     * listing, which an accessor then finds to be empty, and an answer with the same content is no news.
     */
    [[nodiscard]] bool load();

    /**
     * Copies the current listing into the directory, if it is not there, and removes every other. After a
     * copy that failed too: what is left behind would be a listing that the database has replaced.
     */
    void persist() const;

    QByteArray hash; // hexadecimal MD5 of the content; empty without a listing
    ListingFile dataFile;

private:
    [[nodiscard]] bool validate();
    [[nodiscard]] bool copyTo(const QString &name) const;

    const LogCategory category;
    const QDir directory;
    const bool usable;
};

} // namespace ts::pm
