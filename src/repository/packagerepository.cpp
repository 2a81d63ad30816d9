#include "repository/packagerepository.h"
#include "repository/packagerepository_p.h"

#include "index/packageindex.h"
#include "logging_p.h"
#include "pooljobs_p.h"
#include "presentation/packagereference.h"
#include "repository/packagesource.h"

#include <QPointer>

#include <algorithm>

namespace ts::pm {

namespace {

constexpr qint64 sourceUpdateInterval = 120000; // milliseconds

using IndexWatcher = QFutureWatcher<QSharedPointer<PackageIndex>>;

} // namespace

PackageRepositoryPrivate::PackageRepositoryPrivate(PackageRepository *q,
                                                   PackageRepository::SourcePersistencePolicy policy)
    : q(q)
    , watcher(new IndexWatcher(q))
    , policy(policy)
{
}

// Translators that go with their references change the language, and who hears of that may still call the
// repository: it has no sources and no index then, but answers.
void PackageRepositoryPrivate::retire()
{
    watcher->disconnect(q);
    for (PackageSource *source : qAsConst(sources))
        source->disconnect(q);
    sources.clear();
    index.reset();
    while (auto *reference = q->findChild<PackageReference *>(QString(), Qt::FindDirectChildrenOnly)) {
        references.remove(reference->id());
        delete reference;
    }
}

// A source that is called may take out, and destroy, any other one, or the repository: false in that case.
bool PackageRepositoryPrivate::forEachSource(const std::function<void(PackageSource *)> &call)
{
    const QPointer<PackageRepository> repository(q);
    const QList<PackageSource *> present = sources;
    for (PackageSource *source : present) {
        if (sources.contains(source))
            call(source);
        if (!repository)
            return false;
    }
    return true;
}

bool PackageRepositoryPrivate::persistAll()
{
    return forEachSource([](PackageSource *source) { source->persist(); });
}

PackageRepository::PackageRepository(SourcePersistencePolicy policy, QObject *parent)
    : QObject(parent)
    , d(new PackageRepositoryPrivate(this, policy))
{
    connect(d->watcher, &IndexWatcher::finished, this, &PackageRepository::finishUpdate,
            Qt::DirectConnection);
    // The first connection of all, so that translations are looked at before anybody else sees a new index.
    connect(this, &PackageRepository::packageIndexChanged, this, &PackageRepository::loadTranslations,
            Qt::DirectConnection);
}

PackageRepository::~PackageRepository()
{
    d->retire();
}

PackageRepository::SourcePersistencePolicy PackageRepository::persistencePolicy() const
{
    return d->policy;
}

void PackageRepository::addSource(PackageSource *source)
{
    if (!source || d->sources.contains(source))
        return;
    d->sources.append(source);
    connect(source, &PackageSource::updateRequired, this, &PackageRepository::scheduleUpdate);
    // Its owner should have removed it before; keeping the pointer would be worse.
    connect(source, &QObject::destroyed, this, [this, source] {
        d->sources.removeOne(source);
        scheduleUpdate();
    });
    std::sort(d->sources.begin(), d->sources.end(),
              [](const PackageSource *a, const PackageSource *b) { return a->priority() < b->priority(); });
    scheduleUpdate();
}

void PackageRepository::removeSource(PackageSource *source)
{
    if (!source || !d->sources.removeOne(source))
        return;
    source->disconnect(this);
    scheduleUpdate();
}

QList<PackageSource *> PackageRepository::sources() const
{
    return d->sources;
}

QSharedPointer<PackageIndex> PackageRepository::packageIndex() const
{
    return d->index;
}

void PackageRepository::persistSources()
{
    Q_UNUSED(d->persistAll()) // the repository is not used any more
}

void PackageRepository::scheduleUpdate()
{
    if (d->updateScheduled)
        return;
    qCInfo(lcPackageRepo) << "Scheduling package index update";
    d->updateScheduled = true;
    QMetaObject::invokeMethod(this, "update", Qt::QueuedConnection);
}

void PackageRepository::update()
{
    d->updateScheduled = false;
    const auto index = QSharedPointer<PackageIndex>::create();
    if (!d->forEachSource([&index](PackageSource *source) { index->addSource(source); }))
        return;
    // Replaces the future of a build that is still running: it ends unseen.
    runOnPool(d->watcher, [index] {
        index->build();
        return index;
    });
}

void PackageRepository::finishUpdate()
{
    d->index = d->watcher->result();
    if (d->policy == PersistAfterUpdate && !d->persistAll())
        return;
    Q_EMIT packageIndexChanged();
}

// Sources may ask for packages, and a reference to one that is missing comes back here.
void PackageRepository::scheduleSourceUpdate()
{
    if (d->updatingSources || !d->sourceUpdateDeadline.hasExpired())
        return;
    d->updatingSources = true;
    if (!d->forEachSource([](PackageSource *source) { source->update(); }))
        return;
    d->updatingSources = false;
    d->sourceUpdateDeadline.setRemainingTime(sourceUpdateInterval, Qt::CoarseTimer);
}

PackageReference *PackageRepository::packageReference(const QString &id)
{
    if (id.isEmpty())
        return nullptr;
    if (PackageReference *known = d->references.value(id))
        return known;
    const QPointer<PackageReference> reference(new PackageReference(id, this));
    reference->follow();
    if (!reference)
        return nullptr;
    // What it has called meanwhile, a source or an installer, may have asked for the same package.
    QPointer<PackageReference> &known = d->references[id];
    if (known)
        delete reference;
    else
        known = reference;
    return known;
}

} // namespace ts::pm
