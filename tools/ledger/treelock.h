#pragma once

#include <QByteArray>
#include <QString>

namespace ts::ledger {

/**
 * Keeps other publishers away from a tree, as long as it exists.
 *
 * The lock is the system's own: it ends with the process, however that ends. The file is there only to have
 * something to lock, so one that a killed publisher left behind keeps nobody out.
 */
class TreeLock
{
public:
    explicit TreeLock(const QString &path);
    ~TreeLock();

    /** Waits at most that long for other publishers. Null, or why there is no lock; a link in the place
     * of the file is never followed. */
    QString acquire(int milliseconds);

private:
    Q_DISABLE_COPY(TreeLock)

    bool isFileInPlace() const;
    QString failure(const QString &cause) const;

    const QByteArray path; // as the system has it
    int descriptor = -1;   // of the file, open while the lock is held
};

} // namespace ts::ledger
