#pragma once

#include "presentation/packagesorter.h"

#include <QScopedPointer>
#include <QString>

namespace ts::pm {

class SortByFieldPrivate;

/**
 * Base of the sorters that order by one key of the manifest, ascending. Packages with equal values keep the
 * order of the index.
 *
 * Ownership, threads and signals: as PackageSorter.
 */
class TAMSELPACKAGEMANAGER_EXPORT SortByField : public PackageSorter
{
    Q_OBJECT
    /** Key in the manifest. Empty, as at first, it leaves the order of the index. */
    Q_PROPERTY(QString name READ name WRITE setName NOTIFY nameChanged)

public:
    explicit SortByField(QObject *parent = nullptr);
    ~SortByField() override;

    QString name() const;
    /** Does not emit updateRequested(). */
    void setName(const QString &name);

Q_SIGNALS:
    void nameChanged();

private:
    QScopedPointer<SortByFieldPrivate> d;
};

} // namespace ts::pm
