#pragma once

#include "tamselpackagemanager_export.h"

#include <QList>
#include <QObject>
#include <QScopedPointer>
#include <QSharedPointer>

namespace ts::pm {

class PackageIndex;
class PackageReference;
class PackageRepositoryPrivate;
class PackageSource;

/**
 * The central object: keeps the sources, owns the current index, and replaces it with a newly built one
 * whenever a source has news.
 *
 * Ownership: sources are not owned; remove a source before destroying it. References handed out are children
 * of the repository and live as long as it does.
 * Threads: repository thread only, which is the one that made it, normally that of the user interface. Only
 * the build of an index runs on the global thread pool.
 * Signals: packageIndexChanged() after each build that was not overtaken by a newer one. Translation packages
 * have been looked at by then. translationsChanged() after translations of the application have changed;
 * each PackageReference has emitted its own translationsChanged() before.
 * Errors: none. A source that cannot be read contributes nothing.
 */
class TAMSELPACKAGEMANAGER_EXPORT PackageRepository : public QObject
{
    Q_OBJECT

public:
    /** When sources are asked to save what they hold. Any other number counts as PersistOnRequest. */
    enum SourcePersistencePolicy : int {
        PersistAfterUpdate = 0, ///< after each build, before packageIndexChanged()
        PersistOnRequest = 1,   ///< only in persistSources()
    };
    Q_ENUM(SourcePersistencePolicy)

    explicit PackageRepository(SourcePersistencePolicy policy, QObject *parent = nullptr);
    ~PackageRepository() override;

    SourcePersistencePolicy persistencePolicy() const;

    /** Adds \a source and schedules an index build. Ignores null and a source that is already there. */
    void addSource(PackageSource *source);

    /**
     * Takes \a source out and schedules an index build. Ignores a source that is not there. The current index
     * keeps the packages of the source until the new one is ready.
     */
    void removeSource(PackageSource *source);

    /** The sources in ascending priority. */
    QList<PackageSource *> sources() const;

    /** The current index; null before the first build has ended. */
    QSharedPointer<PackageIndex> packageIndex() const;

    /** Asks every source to save what it holds. */
    void persistSources();

    /** Asks every source to look for new data, at most once in 120 seconds; calls in between are lost. */
    void scheduleSourceUpdate();

    /**
     * The one reference to the package \a id, made at the first call; null for an empty id, and if a source
     * or an accessor that is called meanwhile destroys the repository. Asking for a reference starts to
     * install the package as soon as an index has it.
     */
    PackageReference *packageReference(const QString &id);

public Q_SLOTS:
    /** Queues update(). Any number of calls in one pass of the event loop cost one build. */
    void scheduleUpdate();

    /** Starts to build a new index at once. The result of a build that is still running is dropped. */
    void update();

    /** Installs the translators of translation packages that the current index has and that are not known
     * yet. */
    void loadTranslations();

    /** Makes manifests be translated anew and tells all references and listeners about it. */
    void notifyTranslationUpdate();

Q_SIGNALS:
    void packageIndexChanged();
    void translationsChanged();

private Q_SLOTS:
    void finishUpdate();

private:
    QScopedPointer<PackageRepositoryPrivate> d;
};

} // namespace ts::pm
