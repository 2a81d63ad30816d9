#pragma once

#include <QString>
#include <QStringList>

namespace ts::ledger {

/**
 * What is wrong with the input of a publisher, collected so that one run tells all of it. A message begins
 * with the place, as in "packages/plant/oak/manifest.json". A value; one thread.
 */
struct Problems
{
    QStringList errors;   ///< nothing is written while there is one
    QStringList warnings; ///< worth knowing, but no obstacle

    void addError(const QString &place, const QString &text) { errors.append(message(place, text)); }
    void addWarning(const QString &place, const QString &text) { warnings.append(message(place, text)); }

private:
    static QString message(const QString &place, const QString &text)
    {
        return place + QLatin1String(": ") + text;
    }
};

} // namespace ts::ledger
