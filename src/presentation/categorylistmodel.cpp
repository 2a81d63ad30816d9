#include "presentation/categorylistmodel.h"

#include "index/keywordnode.h"
#include "index/packageindex.h"
#include "pooljobs_p.h"
#include "presentation/inturn_p.h"
#include "presentation/providerhandle_p.h"

#include <QFutureWatcher>

namespace ts::pm {

namespace {

constexpr int idRole = 0;
constexpr int nameRole = 1;

using KeywordWatcher = QFutureWatcher<KeywordList>;

KeywordList selectCategories(const QSharedPointer<PackageIndex> &index, const QString &type)
{
    return PackageIndex::selectKeywords(index, [&type](KeywordNode *keyword) {
        // Being a category is the quicker question of the two.
        return keyword->isCategory() && (type.isEmpty() || keyword->linksToPackageType(QStringRef(&type)));
    });
}

} // namespace

class CategoryListModelPrivate
{
public:
    explicit CategoryListModelPrivate(CategoryListModel *q)
        : q(q)
        , watcher(new KeywordWatcher(q))
    {
    }

    void queueUpdate()
    {
        if (updatePending)
            return;
        updatePending = true;
        QMetaObject::invokeMethod(q, "updateList", Qt::QueuedConnection);
    }

    CategoryListModel *const q;
    ProviderHandle provider;
    KeywordWatcher *const watcher; // of the newest job; child of q
    bool updatePending = false;
    KeywordList list;
    QString packageType;
};

CategoryListModel::CategoryListModel(QObject *parent)
    : QAbstractListModel(parent)
    , d(new CategoryListModelPrivate(this))
{
    connect(d->watcher, &KeywordWatcher::finished, this, &CategoryListModel::finishUpdate);
}

CategoryListModel::~CategoryListModel() = default;

QString CategoryListModel::packageType() const
{
    return d->packageType;
}

void CategoryListModel::setPackageType(const QString &type)
{
    if (d->packageType == type)
        return;
    d->packageType = type;
    inTurn(this, &CategoryListModel::packageTypeChanged, [this] { d->queueUpdate(); });
}

QObject *CategoryListModel::packageProvider() const
{
    return d->provider.object();
}

void CategoryListModel::setPackageProvider(QObject *provider)
{
    if (d->provider.is(provider))
        return;
    if (!d->provider.assign(provider, this, &CategoryListModel::updateList, ProviderHandle::KeepUnusable))
        return;
    d->queueUpdate();
    Q_EMIT packageProviderChanged();
}

int CategoryListModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : d->list.size();
}

QVariant CategoryListModel::data(const QModelIndex &index, int role) const
{
    const int row = index.row();
    if (row < 0 || row >= d->list.size())
        return QVariant();
    switch (role) {
    case idRole:
        return d->list.at(row)->id().toString();
    case nameRole:
        return d->list.at(row)->displayString().toString();
    default:
        return QVariant();
    }
}

QHash<int, QByteArray> CategoryListModel::roleNames() const
{
    return {{idRole, QByteArrayLiteral("id")}, {nameRole, QByteArrayLiteral("name")}};
}

void CategoryListModel::updateList()
{
    d->updatePending = false;
    const auto job = [index = d->provider.packageIndex(), type = d->packageType] {
        return selectCategories(index, type);
    };
    runOnPool(d->watcher, job);
}

void CategoryListModel::finishUpdate()
{
    beginResetModel();
    d->list = d->watcher->result();
    endResetModel();
}

} // namespace ts::pm
