#pragma once

#include "repository/packagesource.h"

#include <QUrl>

namespace ts::data {
class Context;
}

namespace ts::pm {

class DocumentPackageSourcePrivate;

/**
 * The documents of one type in the database of a data context, as packages of the type "compat:" followed by
 * that of the documents. The document itself is the manifest; such packages have no files, keywords and
 * links, and are installed as soon as they are known.
 *
 * The documents come from the view "by_type" of the design document "melvoro", whose keys are arrays that
 * begin with the type. docs/couchdb.md describes it. Polls: 2 seconds after it is made, and then every 302
 * seconds. Rows that differ from those before give an updateRequired(). What was persisted is there again at
 * the next start, before any poll.
 *
 * Ownership: a child of its context; take it out of the repository before the context goes.
 * Threads: repository thread only. Answers are parsed on the global thread pool. persist() waits for as long
 * as another process is persisting the same documents.
 * Errors: a poll that fails leaves everything as it is, with a critical message in "tamsel.package.document".
 * Persisted data that do not match their hash are removed, with a message. Rows that take more than 4 MiB
 * when written with indentation cannot be read, and give no packages; a poll that brings about 64 MiB fails.
 */
class TAMSELPACKAGEMANAGER_EXPORT DocumentPackageSource : public PackageSource
{
    Q_OBJECT

public:
    /**
     * \a type is that of the documents, \a context must not be null. A type that would lead out of "packages"
     * below the data location, as "::" would, persists nothing. Other sources and installed packages have the
     * directories "couchdb", "files", "install" and "servers" there, which no type should be named after.
     */
    DocumentPackageSource(const QString &type, ts::data::Context *context);
    ~DocumentPackageSource() override;

    /** The file that holds the rows now; empty if there is none. */
    QString dataFile() const;

    /**
     * The database: service URL of the context, "/", and its database, as the parent tells them now; empty if
     * that is no context. Polls go to what it was when the source was made.
     */
    QUrl baseUrl() const;

    /** -1, the lowest of all sources. */
    int priority() const override;
    PackageAccessor *getAccessor() const override;
    void persist() override;
    void update() override;

protected:
    void timerEvent(QTimerEvent *event) override;

private:
    QScopedPointer<DocumentPackageSourcePrivate> d;
};

} // namespace ts::pm
