#pragma once

#include "repositoryobserver.h"

#include <TamselPackageManager/PackageReference>

#include <QVector>

namespace browser {

/**
 * Tells when the translation packages of the catalogue have had their chance to be installed, so that titles
 * can be shown as texts and not as ids.
 *
 * Ownership: as RepositoryObserver.
 * Threads: the repository's thread.
 * Errors: a translation package that cannot be installed does not hold anybody up.
 */
class TranslationState : public RepositoryObserver
{
    Q_OBJECT
    /** Whether there is an index, and none of its translation packages is still on its way. */
    Q_PROPERTY(bool settled READ isSettled NOTIFY settledChanged)

public:
    explicit TranslationState(QObject *parent = nullptr);

    bool isSettled() const { return settled; }

Q_SIGNALS:
    void settledChanged();

protected:
    void handleIndexChange() override;

private:
    void evaluate();

    QVector<QPointer<ts::pm::PackageReference>> translations;
    bool settled = false;
};

} // namespace browser
