#pragma once

#include <QByteArray>
#include <QString>

namespace ts::ledger {

/**
 * What tables and messages show of a text, up to \a length characters: names in a stranger's ledger have up
 * to 65,535 bytes, and thousands of records can refer to one. Any thread.
 */
inline QString shortened(const QString &text, int length = 80)
{
    return text.size() > length ? text.left(length) + QLatin1String("...") : text;
}

/** As above, of UTF-8, without decoding more of it. */
inline QString shortened(const QByteArray &utf8, int length = 80)
{
    constexpr int longestCharacter = 4; // bytes
    return shortened(QString::fromUtf8(utf8.left((length + 1) * longestCharacter)), length);
}

} // namespace ts::ledger
