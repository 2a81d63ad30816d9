#pragma once

#include "repositoryobserver.h"

#include <QString>

namespace browser {

/**
 * Follows a word that the list is searched for into another language: tells what its keyword is called in the
 * next index.
 *
 * Ownership, threads: as RepositoryObserver.
 * Errors: a word that is none of a keyword, or has no counterpart, is not heard of again.
 */
class RenamedKeyword : public RepositoryObserver
{
    Q_OBJECT

public:
    explicit RenamedKeyword(QObject *parent = nullptr);

    /** Keeps the keyword that has the string \a word in the present index. */
    Q_INVOKABLE void keep(const QString &word);

Q_SIGNALS:
    void renamed(const QString &name);

protected:
    void handleIndexChange() override;

private:
    QString keywordId; // empty while there is nothing to follow
};

} // namespace browser
