#pragma once

#include "repositoryobserver.h"

#include <QVariantList>

namespace browser {

/**
 * The package types of the catalogue with the number of packages of each.
 *
 * Ownership: as RepositoryObserver.
 * Threads: the repository's thread.
 * Errors: none.
 */
class CatalogueTypes : public RepositoryObserver
{
    Q_OBJECT
    /**
     * One object for each type, parents before their children: "type", "depth" (0 for the first level) and
     * "count", with the packages of types below. A type that says no more than its parent is left out, and
     * so is one below the eighth level.
     */
    Q_PROPERTY(QVariantList types READ types NOTIFY typesChanged)

public:
    explicit CatalogueTypes(QObject *parent = nullptr);

    QVariantList types() const { return typeList; }

Q_SIGNALS:
    void typesChanged();

protected:
    void handleIndexChange() override;

private:
    QVariantList typeList;
};

} // namespace browser
