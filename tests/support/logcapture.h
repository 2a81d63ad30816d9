#pragma once

#include <QStringList>

namespace ts::pm::test {

/** Collects the log lines of one category, instead of printing them, for as long as it lives. Any thread may
 * log. */
class LogCapture
{
public:
    /** Captures \a category at all levels, debug lines included. One capture at a time. */
    explicit LogCapture(const QString &category);
    ~LogCapture();

    /** The lines so far, each with its level before it, as in "critical: Package install error 1 ...". */
    QStringList lines() const;

private:
    Q_DISABLE_COPY(LogCapture)
};

} // namespace ts::pm::test
