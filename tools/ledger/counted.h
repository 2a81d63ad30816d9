#pragma once

#include <QLatin1String>
#include <QString>

namespace ts::ledger {

/** "1 package", "2 packages": \a thing in the singular of a word with a regular plural. Any thread. */
inline QString counted(qint64 count, QLatin1String thing)
{
    return QString::number(count) + QLatin1Char(' ') + thing
           + (count == 1 ? QLatin1String() : QLatin1String("s"));
}

} // namespace ts::ledger
