#pragma once

#include "repositoryobserver.h"

#include <TamselPackageManager/PackageReference>

#include <QStringList>
#include <QVector>

namespace browser {

/**
 * Tells when the translation packages of the catalogue have had their chance to be installed, so that titles
 * can be shown as texts and not as ids, and which languages there are.
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
    /** Codes of the languages that the built-in texts or a translation package have, in their order. */
    Q_PROPERTY(QStringList languages READ languages NOTIFY languagesChanged)

public:
    explicit TranslationState(QObject *parent = nullptr);

    bool isSettled() const { return settled; }
    QStringList languages() const { return languageCodes; }

    /** Has everything follow that the catalogue brought in another language before: texts at once, keywords
     * with the next index. */
    Q_INVOKABLE void followLanguage();

Q_SIGNALS:
    void settledChanged();
    void languagesChanged();

protected:
    void handleIndexChange() override;

private:
    void evaluate();
    void setLanguages(const QStringList &codes);

    QVector<QPointer<ts::pm::PackageReference>> translations;
    QStringList languageCodes;
    bool settled = false;
};

} // namespace browser
