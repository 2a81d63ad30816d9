#pragma once

#include "childprocess.h"

#include "support/files.h"
#include "support/literals.h"

#include <QRegularExpression>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTest>
#include <QUrl>

namespace ts::pm::test {

/** nginx on a free port of the loopback, set up as docs/publishing.md has it. */
class Nginx
{
public:
    /** Serves the directory "www" in \a directory and writes what it needs beside it. */
    explicit Nginx(const QString &directory)
        : directory(directory + QLatin1Char('/'))
    {
        QTcpServer free;
        free.listen(QHostAddress::LocalHost);
        port = free.serverPort();
    }

    enum Encryption { Plain, Tls };

    /** Starts it, anew if it runs, with \a directives added. The port stays the same. For TLS "server.pem"
     * and "server.key" have to be in its directory. */
    [[nodiscard]] bool start(const QString &directives = QString(), Encryption encryption = Plain)
    {
        stop();
        scheme = encryption == Tls ? "https"_s : "http"_s;
        QFile::remove(directory + "access.log"_s);
        if (!configure(directives))
            return false;
        process.start(QStringLiteral(NGINX), {"-p"_s, directory, "-c"_s, "nginx.conf"_s, "-e"_s, "stderr"_s});
        const auto settled = [this] { return process.state() == QProcess::NotRunning || answers(); };
        return process.waitForStarted() && QTest::qWaitFor(settled, 30000)
               && process.state() == QProcess::Running;
    }
    void stop() { process.end(); }

    QUrl url() const { return QUrl("%1://127.0.0.1:%2"_s.arg(scheme).arg(port)); }

    /** Answers since it was started that match \a pattern, as in "status;path;tag;credentials;encoding" with
     * what was asked for and how the body came. */
    int count(const QString &pattern) const
    {
        const QString log = QString::fromUtf8(readFile(directory + "access.log"_s));
        return log.split(QLatin1Char('\n')).filter(QRegularExpression("^%1$"_s.arg(pattern))).size();
    }

private:
    bool answers() const
    {
        QTcpSocket socket;
        socket.connectToHost(QHostAddress(QHostAddress::LocalHost), port);
        return socket.waitForConnected(1000);
    }

    bool configure(const QString &directives) const
    {
        const QString page = QString::fromUtf8(readFile(QStringLiteral(PUBLISHING_PAGE)));
        QString server = page.section("```nginx\n"_s, 1).section("```"_s, 0, 0);
        if (scheme == "http"_s)
            server.remove(QRegularExpression("(ssl_certificate[^;]*;| ssl(?=;))"_s));
        server.replace(QRegularExpression("/etc/ssl/.*\\."_s), directory + "server."_s);
        server.replace("listen 443"_s, "listen 127.0.0.1:%1"_s.arg(port));
        server.replace("/srv/catalogue;"_s, "%1www;\n%2"_s.arg(directory, directives));
        for (const char *kind : {"client_body", "proxy", "fastcgi", "uwsgi", "scgi"})
            server.prepend("%1_temp_path temporary;\n"_s.arg(QLatin1String(kind)));
        const auto format = "$status;$request_uri;$http_if_none_match;$http_authorization;"
                            "$sent_http_content_encoding"_s;
        const auto frame = "daemon off; master_process off; pid nginx.pid; events {}\n"
                           "http { log_format test escape=none \"%1\"; access_log access.log test; %2 }"_s;
        return writeFile(directory + "nginx.conf"_s, frame.arg(format, server).toUtf8());
    }

    const QString directory;
    ChildProcess process;
    QString scheme = "http"_s;
    quint16 port = 0;
};

} // namespace ts::pm::test
