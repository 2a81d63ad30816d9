#pragma once

#include "tamselpackagemanager_export.h"

#include <QAbstractListModel>
#include <QScopedPointer>

namespace ts::pm {

class CategoryListModelPrivate;

/**
 * The category keywords, all or those that lead to packages of one type, ordered by name without regard to
 * case.
 *
 * The list is found on the global thread pool. Each update is one model reset, also when nothing has changed.
 *
 * Roles: 0 "id", 1 "name" in the active language.
 *
 * Ownership: the provider is not owned.
 * Threads: repository thread only.
 * Errors: a provider without the interface is logged in "tamsel.packages" and gives an empty list, though
 * packageProvider goes on naming it.
 */
class TAMSELPACKAGEMANAGER_EXPORT CategoryListModel : public QAbstractListModel
{
    Q_OBJECT
    /** The type that the categories have to lead to. Empty, as at first, it selects all categories. */
    Q_PROPERTY(QString packageType READ packageType WRITE setPackageType NOTIFY packageTypeChanged)
    /** An object that implements IPackageProvider. Null at first. */
    Q_PROPERTY(
        QObject *packageProvider READ packageProvider WRITE setPackageProvider NOTIFY packageProviderChanged)

public:
    explicit CategoryListModel(QObject *parent = nullptr);
    ~CategoryListModel() override;

    QString packageType() const;
    void setPackageType(const QString &type);

    QObject *packageProvider() const;
    void setPackageProvider(QObject *provider);

    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QHash<int, QByteArray> roleNames() const override;

Q_SIGNALS:
    void packageTypeChanged();
    void packageProviderChanged();

private Q_SLOTS:
    void updateList();
    void finishUpdate();

private:
    QScopedPointer<CategoryListModelPrivate> d;
};

} // namespace ts::pm
