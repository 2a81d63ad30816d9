#pragma once

#include <QHash>
#include <QScopedPointer>
#include <QString>
#include <QStringRef>

namespace ts::pm {

/**
 * All strings of an index, in one.
 *
 * References name the QString object and a position in it, so they stay valid while the buffer grows, but not
 * if the buffer moves.
 *
 * Threads: worker job only until it is closed, then immutable, any thread.
 */
class StringBuffer
{
public:
    StringBuffer();
    ~StringBuffer();

    /**
     * A reference to \a string in the buffer; null for an empty string, and for any string once the buffer is
     * closed or full. Equal strings are stored as often as they are added.
     */
    QStringRef addString(const QString &string);

    /** Gives back the room that was kept for growth; addString() enters nothing from now on. */
    void close();

private:
    Q_DISABLE_COPY(StringBuffer)

    // Nothing is entered here: looking each string up would cost the build more time than the copies cost
    // memory.
    QScopedPointer<QHash<QString, QStringRef>> lookup;
    QString buffer;
};

} // namespace ts::pm
