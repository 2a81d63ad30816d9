#pragma once

#include "repository/packagerepository.h"

#include <QDeadlineTimer>
#include <QFutureWatcher>
#include <QHash>
#include <QPointer>

#include <functional>

namespace ts::pm {

// Repository thread only.
class PackageRepositoryPrivate
{
public:
    PackageRepositoryPrivate(PackageRepository *q, PackageRepository::SourcePersistencePolicy policy);

    void retire();
    [[nodiscard]] bool forEachSource(const std::function<void(PackageSource *)> &call);
    [[nodiscard]] bool persistAll();
    void trackTranslation(const QString &id);
    void loadTranslation(PackageReference *reference);
    void notifyPendingTranslations();

    PackageRepository *const q;
    QList<PackageSource *> sources; // in ascending priority, not owned
    QSharedPointer<PackageIndex> index;
    QFutureWatcher<QSharedPointer<PackageIndex>> *const watcher; // of the newest build
    bool updateScheduled = false;
    const PackageRepository::SourcePersistencePolicy policy;
    QDeadlineTimer sourceUpdateDeadline{0, Qt::CoarseTimer};
    bool updatingSources = false;

    QHash<QString, QPointer<PackageReference>> references; // every one ever handed out; children of q
    bool translationNotifyPending = false;
    QHash<QString, PackageReference *> translationReferences;
};

} // namespace ts::pm
