#pragma once

#include "presentation/packagelistdiff_p.h"
#include "presentation/packagelistmodel.h"
#include "presentation/packagerows_p.h"
#include "presentation/providerhandle_p.h"
#include "presentation/tracked_p.h"

#include <QFutureWatcher>
#include <QHash>
#include <QList>
#include <QPointer>
#include <QTimer>

namespace ts::pm {

// Shared, so that the steps can leave the future: they hold their index, and it stays until the next job.
using StepWatcher = QFutureWatcher<std::shared_ptr<QVector<ListStep>>>;

// Repository thread only.
class PackageListModelPrivate
{
public:
    explicit PackageListModelPrivate(PackageListModel *q);
    ~PackageListModelPrivate();

    static void appendField(QQmlListProperty<ManifestField> *list, ManifestField *field);
    static int fieldCount(QQmlListProperty<ManifestField> *list);
    static ManifestField *fieldAt(QQmlListProperty<ManifestField> *list, int index);
    static void clearFields(QQmlListProperty<ManifestField> *list);
    void queueFieldChange();

    void updateList();
    void startJob(const QSharedPointer<PackageIndex> &index);
    Superseded supersedeJob();

    template<typename Part>
    void replacePart(Tracked<Part> &part, Part *replacement);

    // What the recorded steps do.
    void resetRows(const PackageList &list);
    void removeRows(int first, int last);
    void insertRows(int position, const PackageList &block);
    void moveRow(int from, int to);

    PackageListModel *const q;
    ProviderHandle provider;
    QString packageType;
    StepWatcher *const watcher; // of the newest job; child of q
    Superseded superseded;      // of the newest job
    PackageRows rows;
    bool fieldsDirty = false;
    QTimer *const updateTimer;             // child of q
    QList<QPointer<ManifestField>> fields; // not owned
    QHash<int, QByteArray> roles;
    Tracked<PackageMatcher> matcher; // not owned
    Tracked<PackageSorter> sorter;   // not owned
};

} // namespace ts::pm
