#pragma once

#include "repository/packagerecords.h"
#include "tamselpackagemanager_export.h"

#include <QJsonObject>
#include <QStringList>
#include <QUrl>

namespace ts::pm {

class InstallLocation;
class PackageInstaller;

/**
 * A read-only view of what one source holds at one moment.
 *
 * The build of an index calls, in this order: keywordLanguages() of all accessors; then of each initialize()
 * once, packageCount() with packageInfo() for each number, keywordCount() with keywordInfo() for each number;
 * and after all accessors have come that far, linkCount() with linkInfo() for each number.
 *
 * Ownership: each index takes one from each source, and owns it for its own life.
 * Threads: made on the repository thread; worker job only during the build; immutable, any thread, after
 * that: packageManifest(), packageFileUrl() and packageInstaller() come from all threads that hold the index,
 * at the same time, so an implementation keeps its data unchanged and takes no lock to read them. Destroyed
 * on the thread of the application object, whichever thread lets go of the index; never, if a worker does
 * while that object goes. A destructor may run in the middle of a change to what showed the packages, so it
 * calls no repository, reference or model.
 * Errors: none. What cannot be read comes back as a record in its default state, an unreadable source has no
 * packages, keywords and links; a negative count is none. An accessor does not throw.
 */
class TAMSELPACKAGEMANAGER_EXPORT PackageAccessor
{
public:
    virtual ~PackageAccessor();

    /** The slow part: lists directories, reads data files. Called exactly once, on a worker thread. */
    virtual void initialize() = 0;

    virtual int packageCount() const = 0;
    virtual PackageInfo packageInfo(int index) const = 0;

    /** The manifest as the source has it, before translation; empty if there is none. */
    virtual QJsonObject packageManifest(int index) const = 0;

    /** Where the file \a name of the package can be fetched from now: a local file or a loopback address. */
    virtual QUrl packageFileUrl(int index, const QString &name) const = 0;

    /**
     * A new job that brings the package into \a location, which is already the package's own place. The job
     * starts in its constructor; the caller owns it, and may keep it when the accessor is gone. Never null.
     */
    [[nodiscard]] virtual PackageInstaller *packageInstaller(int index,
                                                             const InstallLocation &location) const = 0;

    virtual int keywordCount() const = 0;
    virtual KeywordInfo keywordInfo(int index) const = 0;

    /**
     * Codes of all languages that the source may have strings in. Answers before initialize() has run, since
     * the index chooses its language before it creates any keyword. May be empty.
     */
    virtual QStringList keywordLanguages() const = 0;

    virtual int linkCount() const = 0;
    virtual LinkInfo linkInfo(int index) const = 0;

protected:
    PackageAccessor();

private:
    Q_DISABLE_COPY(PackageAccessor)
};

} // namespace ts::pm
