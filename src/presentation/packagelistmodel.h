#pragma once

#include "presentation/manifestfield.h"
#include "presentation/packagematcher.h"
#include "presentation/packagesorter.h"
#include "tamselpackagemanager_export.h"

#include <QAbstractListModel>
#include <QJsonValue>
#include <QQmlListProperty>
#include <QQmlParserStatus>
#include <QScopedPointer>

namespace ts::pm {

class PackageListModelPrivate;

/**
 * The packages of one type, filtered and ordered, with one role for each manifest field.
 *
 * Selection, sorting and the comparison with the rows shown run on the global thread pool; the thread of the
 * user interface only carries out the changes that were found. A change of filter, type or index takes effect
 * 30 ms after the last such change, a change of provider starts to take effect at once.
 *
 * Within one index the rows change by removals from the bottom up, then insertions from the top down, then
 * moves of single rows. A new index gives one model reset. A plain ListView or GridView stands still for long
 * when thousands of rows go; on a long list it wants "PromptLayout.enabled: true" of the QML module.
 *
 * Changing the order of a list that is shown: rows move only downwards or to a row below the first, so a new
 * order in which a package would have to move to row 0 brings no change at all. Take a new order through a
 * reset: set packageProvider to null, set the sorter, set packageProvider again; or use a new model.
 *
 * Roles: 0 is "id"; the field at position i of manifestFields is role 32 + i, under the name that the field
 * has then. Views are not told when a field is renamed or gets another default, nor when texts change with
 * the translations: a value is new when it is next read.
 *
 * Ownership: provider, fields, matcher and sorter are not owned.
 * Threads: repository thread only.
 * Signals: countChanged() once after all rows of an update have changed, if their number did; not when the
 * provider is taken away. matcherChanged() and sorterChanged() are declared, and on purpose never emitted.
 * Errors: a provider without the interface is logged in "tamsel.packages" and counts as null.
 */
class TAMSELPACKAGEMANAGER_EXPORT PackageListModel : public QAbstractListModel, public QQmlParserStatus
{
    Q_OBJECT
    Q_INTERFACES(QQmlParserStatus)
    Q_CLASSINFO("DefaultProperty", "manifestFields")
    /** An object that implements IPackageProvider. Null at first. */
    Q_PROPERTY(
        QObject *packageProvider READ packageProvider WRITE setPackageProvider NOTIFY packageProviderChanged)
    /** The type to show, with all types below it. Empty, as at first, it selects all packages. */
    Q_PROPERTY(QString packageType READ packageType WRITE setPackageType NOTIFY packageTypeChanged)
    /** What the roles beside "id" read. None at first. */
    Q_PROPERTY(QQmlListProperty<ts::pm::ManifestField> manifestFields READ manifestFields NOTIFY
                   manifestFieldsChanged)
    /** Null, as at first, shows all packages of the type. */
    Q_PROPERTY(ts::pm::PackageMatcher *matcher READ matcher WRITE setMatcher NOTIFY matcherChanged)
    /** Null, as at first, leaves the order of the index. */
    Q_PROPERTY(ts::pm::PackageSorter *sorter READ sorter WRITE setSorter NOTIFY sorterChanged)
    /** Number of rows. Bindings show what it was at the last countChanged(). */
    Q_PROPERTY(int count READ count NOTIFY countChanged)

public:
    explicit PackageListModel(QAbstractListModel *parent = nullptr);
    ~PackageListModel() override;

    QObject *packageProvider() const;
    void setPackageProvider(QObject *provider);

    QString packageType() const;
    void setPackageType(const QString &type);

    QQmlListProperty<ManifestField> manifestFields();

    PackageMatcher *matcher() const;
    void setMatcher(PackageMatcher *matcher);

    PackageSorter *sorter() const;
    void setSorter(PackageSorter *sorter);

    int count() const;

    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QHash<int, QByteArray> roleNames() const override;

    void classBegin() override;
    void componentComplete() override;

    /** The id of the package in row \a index; a null string if there is no such row. */
    Q_INVOKABLE QString packageAt(int index) const;

    /** The row of the package \a id, or -1. An empty id gives 0. */
    Q_INVOKABLE int indexOf(const QString &id) const;

    /** A field of the manifest in row \a index, as it is; undefined if there is no such row or field. */
    Q_INVOKABLE QJsonValue manifestField(int index, const QString &fieldName) const;

Q_SIGNALS:
    void packageProviderChanged();
    void packageTypeChanged();
    void manifestFieldsChanged();
    void matcherChanged();
    void sorterChanged();
    void countChanged();

private Q_SLOTS:
    void scheduleUpdate();
    void finishListUpdate();
    void processFieldChange();

private:
    friend class PackageListModelPrivate;
    QScopedPointer<PackageListModelPrivate> d;
};

} // namespace ts::pm
