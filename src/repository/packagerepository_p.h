#pragma once

#include "repository/packagerepository.h"

#include <QDeadlineTimer>
#include <QFutureWatcher>
#include <QHash>

namespace ts::pm {

// Repository thread only.
class PackageRepositoryPrivate
{
public:
    PackageRepositoryPrivate(PackageRepository *q, PackageRepository::SourcePersistencePolicy policy);

    void retire();
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

    QHash<QString, PackageReference *> references; // every one ever handed out; children of q
    bool translationNotifyPending = false;
    QHash<QString, PackageReference *> translationReferences;
};

} // namespace ts::pm
