#pragma once

#include "ledger/problems.h"

#include <QString>
#include <QStringList>

#include <limits>

namespace ts::ledger {

/** What the command says to people. Messages go to the error output, results to the standard output; colours
 * to a terminal only, and not if NO_COLOR is set. Any thread. */
class Console
{
public:
    static bool isErrorTerminal();

    static void error(const QString &message);
    static void warning(const QString &message);
    static void hint(const QString &message);

    /** The first \a most messages, and how many there are besides, not kept ones included. */
    static QStringList abridged(const QStringList &messages, int notKept,
                                int most = std::numeric_limits<int>::max());

    /** Tells all warnings and errors, but not hundreds of them. Returns true if there are no errors. */
    static bool report(const Problems &problems);

    /** \a text without control characters: names can come from anywhere, and a terminal obeys. */
    static QString printable(QString text);

    /** A line of the result, as it stands. False, with an error told, if the output does not take it. */
    static bool print(const QString &line);
};

} // namespace ts::ledger
