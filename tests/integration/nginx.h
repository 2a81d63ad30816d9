#pragma once

#include "childprocess.h"

#include <QStringList>
#include <QUrl>

namespace ts::pm::test {

/** nginx on a free port of the loopback, set up as docs/publishing.md has it. */
class Nginx
{
public:
    /** Serves the directory "www" in \a directory and writes what it needs beside it. */
    explicit Nginx(const QString &directory);
    ~Nginx() { stop(); }

    /** Starts it, anew if it runs, with \a directives added. The port stays the same. */
    [[nodiscard]] bool start(const QString &directives = QString());
    void stop();

    QUrl url() const;

    /** Answers so far that match \a pattern, as in "status;path;tag;credentials;encoding" with what was asked
     * for and how the body came. */
    int count(const QString &pattern) const;

private:
    bool answers() const;
    void configure(const QString &directives) const;

    const QString directory;
    ChildProcess process;
    quint16 port = 0;
};

} // namespace ts::pm::test
