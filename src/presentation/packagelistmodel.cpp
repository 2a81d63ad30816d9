#include "presentation/packagelistmodel.h"
#include "presentation/packagelistmodel_p.h"

#include "index/packageindex.h"
#include "index/packagenode.h"
#include "pooljobs_p.h"
#include "presentation/inturn_p.h"
#include "presentation/listelement_p.h"

namespace ts::pm {

namespace {

constexpr int updateDelay = 30; // milliseconds
constexpr int idRole = 0;
constexpr int firstFieldRole = 32;

PackageListModelPrivate *modelOf(QQmlListProperty<ManifestField> *list)
{
    return static_cast<PackageListModelPrivate *>(list->data);
}

QHash<int, QByteArray> initialRoles()
{
    return {{idRole, QByteArrayLiteral("id")}};
}

} // namespace

PackageListModelPrivate::PackageListModelPrivate(PackageListModel *q)
    : q(q)
    , watcher(new StepWatcher(q))
    , updateTimer(new QTimer(q))
    , roles(initialRoles())
{
    updateTimer->setInterval(updateDelay);
    updateTimer->setSingleShot(true);
}

PackageListModelPrivate::~PackageListModelPrivate()
{
    supersedeJob();
}

void PackageListModelPrivate::appendField(QQmlListProperty<ManifestField> *list, ManifestField *field)
{
    if (!belongsIn(list, field))
        return;
    modelOf(list)->fields.append(field);
    modelOf(list)->queueFieldChange();
}

int PackageListModelPrivate::fieldCount(QQmlListProperty<ManifestField> *list)
{
    return modelOf(list)->fields.size();
}

ManifestField *PackageListModelPrivate::fieldAt(QQmlListProperty<ManifestField> *list, int index)
{
    return modelOf(list)->fields.value(index);
}

void PackageListModelPrivate::clearFields(QQmlListProperty<ManifestField> *list)
{
    if (modelOf(list)->fields.isEmpty())
        return;
    modelOf(list)->fields.clear();
    modelOf(list)->queueFieldChange();
}

void PackageListModelPrivate::queueFieldChange()
{
    if (fieldsDirty)
        return;
    fieldsDirty = true;
    QMetaObject::invokeMethod(q, "processFieldChange", Qt::QueuedConnection);
}

void PackageListModelPrivate::updateList()
{
    if (const QSharedPointer<PackageIndex> index = provider.packageIndex())
        startJob(index);
    else if (rows.index())
        resetRows(PackageList()); // countChanged() comes from finishListUpdate() alone
}

// The new future takes the place of that of an earlier job, whose result is dropped. The rows are then still
// those that the new job compares with, since steps are only run at the end of the newest job. Matchers and
// sorters of the application may delete the model, or have it start a newer job.
void PackageListModelPrivate::startJob(const QSharedPointer<PackageIndex> &index)
{
    const QPointer<PackageListModel> alive(q);
    const Superseded latest = superseded;
    const auto filter = matcher.get() ? matcher.get()->matchFunction() : PackageIndex::PackageFilter();
    if (!alive)
        return;
    const auto less = sorter.get() ? sorter.get()->sortFunction() : PackageIndex::PackageOrder();
    if (!alive || superseded != latest)
        return;
    const auto job = [model = this, index, type = packageType, filter, less, shown = rows.toList(),
                      jobSuperseded = supersedeJob()] {
        const PackageList selected = PackageIndex::selectPackages(index, type, filter, less);
        return std::make_shared<QVector<ListStep>>(
            PackageListDiff(model, shown, selected).steps(jobSuperseded));
    };
    runOnPool(watcher, job);
}

// Lets the job so far end, if it waits, and returns the mark of the next one.
Superseded PackageListModelPrivate::supersedeJob()
{
    if (superseded)
        *superseded = true;
    superseded = std::make_shared<std::atomic<bool>>(false);
    return superseded;
}

// Does not tell that the property has changed, by choice: only what the list shows is news.
template<typename Part>
void PackageListModelPrivate::replacePart(Tracked<Part> &part, Part *replacement)
{
    if (part.is(replacement))
        return;
    if (part.get())
        part.get()->disconnect(q);
    part.set(replacement);
    if (replacement)
        QObject::connect(replacement, &Part::updateRequested, q, &PackageListModel::scheduleUpdate);
    q->scheduleUpdate();
}

void PackageListModelPrivate::resetRows(const PackageList &list)
{
    q->beginResetModel();
    rows.reset(list);
    q->endResetModel();
}

// A step was made for the rows as they are now. Who hears that it is about to come may take them away; it
// then changes nothing.
void PackageListModelPrivate::removeRows(int first, int last)
{
    const quint32 now = rows.changes();
    q->beginRemoveRows(QModelIndex(), first, last);
    if (rows.changes() == now)
        rows.remove(first, last);
    q->endRemoveRows();
}

void PackageListModelPrivate::insertRows(int position, const PackageList &block)
{
    const quint32 now = rows.changes();
    q->beginInsertRows(QModelIndex(), position, position + block.size() - 1);
    if (rows.changes() == now)
        rows.insert(position, block);
    q->endInsertRows();
}

void PackageListModelPrivate::moveRow(int from, int to)
{
    const quint32 now = rows.changes();
    q->beginMoveRows(QModelIndex(), from, from, QModelIndex(), to > from ? to + 1 : to);
    if (rows.changes() == now)
        rows.move(from, to);
    q->endMoveRows();
}

PackageListModel::PackageListModel(QAbstractListModel *parent)
    : QAbstractListModel(parent)
    , d(new PackageListModelPrivate(this))
{
    connect(d->watcher, &StepWatcher::finished, this, &PackageListModel::finishListUpdate);
    connect(d->updateTimer, &QTimer::timeout, this, [this] { d->updateList(); });
}

PackageListModel::~PackageListModel() = default;

QObject *PackageListModel::packageProvider() const
{
    return d->provider.object();
}

void PackageListModel::setPackageProvider(QObject *provider)
{
    if (d->provider.is(provider))
        return;
    if (!d->provider.assign(provider, this, &PackageListModel::scheduleUpdate, ProviderHandle::DropUnusable))
        return;
    inTurn(
        this, [this] { d->updateList(); }, &PackageListModel::packageProviderChanged);
}

QString PackageListModel::packageType() const
{
    return d->packageType;
}

void PackageListModel::setPackageType(const QString &type)
{
    if (d->packageType == type)
        return;
    d->packageType = type;
    inTurn(this, &PackageListModel::packageTypeChanged, &PackageListModel::scheduleUpdate);
}

QQmlListProperty<ManifestField> PackageListModel::manifestFields()
{
    return QQmlListProperty<ManifestField>(
        this, d.data(), &PackageListModelPrivate::appendField, &PackageListModelPrivate::fieldCount,
        &PackageListModelPrivate::fieldAt, &PackageListModelPrivate::clearFields);
}

PackageMatcher *PackageListModel::matcher() const
{
    return d->matcher.get();
}

void PackageListModel::setMatcher(PackageMatcher *matcher)
{
    d->replacePart(d->matcher, matcher);
}

PackageSorter *PackageListModel::sorter() const
{
    return d->sorter.get();
}

void PackageListModel::setSorter(PackageSorter *sorter)
{
    d->replacePart(d->sorter, sorter);
}

int PackageListModel::count() const
{
    return d->rows.size();
}

int PackageListModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : d->rows.size();
}

QVariant PackageListModel::data(const QModelIndex &index, int role) const
{
    const int row = index.row();
    if (row < 0 || row >= d->rows.size())
        return QVariant();
    const PackageNode *package = d->rows.at(row);
    if (role == idRole)
        return package->id().toString();
    if (role < firstFieldRole)
        return QVariant();
    const ManifestField *field = d->fields.value(role - firstFieldRole);
    return field ? field->read(package) : QVariant();
}

QHash<int, QByteArray> PackageListModel::roleNames() const
{
    return d->roles;
}

void PackageListModel::classBegin() {}

// Roles have to be known before the first view attaches.
void PackageListModel::componentComplete()
{
    processFieldChange();
}

QString PackageListModel::packageAt(int index) const
{
    return index >= 0 && index < d->rows.size() ? d->rows.at(index)->id().toString() : QString();
}

int PackageListModel::indexOf(const QString &id) const
{
    if (id.isEmpty())
        return 0;
    for (int row = 0; row < d->rows.size(); ++row) {
        if (d->rows.at(row)->id() == id)
            return row;
    }
    return -1;
}

QJsonValue PackageListModel::manifestField(int index, const QString &fieldName) const
{
    if (index < 0 || index >= d->rows.size())
        return QJsonValue(QJsonValue::Undefined);
    return d->rows.at(index)->readManifest(fieldName);
}

// Restarts the wait, so that a burst of changes gives one update.
void PackageListModel::scheduleUpdate()
{
    d->updateTimer->start();
}

// Each step has listeners, who may run an event loop, set another provider or delete the model. Once a newer
// job has been started the steps left do not fit any more. That job may have seen the rows in the middle of
// a step, so it is started again.
void PackageListModel::finishListUpdate()
{
    const QPointer<PackageListModel> alive(this);
    const Superseded superseded = d->superseded; // also when the model is deleted
    const int oldCount = d->rows.size();
    const QVector<ListStep> steps = std::move(*d->watcher->result());
    for (auto step = steps.begin(); step != steps.end() && !*superseded; ++step)
        (*step)();
    if (alive && d->rows.size() != oldCount)
        Q_EMIT countChanged();
    if (alive && *superseded)
        d->updateList();
}

void PackageListModel::processFieldChange()
{
    if (!d->fieldsDirty)
        return;
    d->fieldsDirty = false;
    beginResetModel();
    d->roles = initialRoles();
    for (int i = 0; i < d->fields.size(); ++i) {
        if (const ManifestField *field = d->fields.at(i))
            d->roles.insert(firstFieldRole + i, field->name().toLatin1());
    }
    inTurn(this, &PackageListModel::manifestFieldsChanged, &PackageListModel::endResetModel);
}

} // namespace ts::pm
