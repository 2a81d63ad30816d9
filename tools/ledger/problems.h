#pragma once

#include <QString>
#include <QStringList>

namespace ts::ledger {

/**
 * What is wrong with the input of a publisher, collected so that one run tells all of it. A message begins
 * with the place, as in "packages/plant/oak/manifest.json". Of thousands the first are kept: a stranger's
 * ledger can be wrong in millions of places. A value; one thread.
 */
struct Problems
{
    QStringList errors;   ///< nothing is written while there is one
    QStringList warnings; ///< worth knowing, but no obstacle

    int moreErrors = 0; ///< not kept, only counted
    int moreWarnings = 0;

    void addError(const QString &place, const QString &text) { add(errors, moreErrors, place, text); }
    void addWarning(const QString &place, const QString &text) { add(warnings, moreWarnings, place, text); }

    void add(const Problems &others)
    {
        errors += others.errors;
        warnings += others.warnings;
        moreErrors += others.moreErrors;
        moreWarnings += others.moreWarnings;
    }

private:
    static void add(QStringList &messages, int &more, const QString &place, const QString &text)
    {
        constexpr int mostKept = 5000;
        if (messages.size() < mostKept)
            messages.append(place + QLatin1String(": ") + text);
        else
            ++more;
    }
};

} // namespace ts::ledger
