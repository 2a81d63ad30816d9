#include "nginx.h"

#include "support/literals.h"

#include <QFile>
#include <QRegularExpression>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTest>

namespace ts::pm::test {

namespace {

QString read(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

} // namespace

Nginx::Nginx(const QString &directory)
    : directory(directory + QLatin1Char('/'))
{
    process.setStandardErrorFile(directory + "/error.log"_s, QIODevice::Append);
}

// Between the search for a port and its use, somebody else may take it.
bool Nginx::start(const QString &directives)
{
    stop();
    for (int attempts = port == 0 ? 5 : 1; attempts > 0; --attempts) {
        if (QTcpServer free; port == 0 && free.listen(QHostAddress::LocalHost))
            port = free.serverPort();
        configure(directives);
        process.start(QStringLiteral(NGINX), {"-p"_s, directory, "-c"_s, "nginx.conf"_s, "-e"_s, "stderr"_s});
        const auto settled = [this] { return process.state() == QProcess::NotRunning || answers(); };
        if (process.waitForStarted() && QTest::qWaitFor(settled, 30000)
            && process.state() == QProcess::Running)
            return true;
        stop();
        if (attempts > 1)
            port = 0;
    }
    qWarning("%s %s", qPrintable(process.errorString()), qPrintable(read(directory + "error.log"_s)));
    return false;
}

void Nginx::stop()
{
    process.kill();
    process.waitForFinished();
}

QUrl Nginx::url() const
{
    return QUrl("http://127.0.0.1:%1"_s.arg(port));
}

int Nginx::count(const QString &pattern) const
{
    const QRegularExpression line("^%1$"_s.arg(pattern));
    return read(directory + "access.log"_s).split(QLatin1Char('\n')).filter(line).size();
}

bool Nginx::answers() const
{
    QTcpSocket socket;
    socket.connectToHost(QHostAddress(QHostAddress::LocalHost), port);
    return socket.waitForConnected(1000);
}

void Nginx::configure(const QString &directives) const
{
    QString server = read(QStringLiteral(PUBLISHING_PAGE)).section("```nginx\n"_s, 1).section("```"_s, 0, 0);
    server.replace("443 ssl"_s, "127.0.0.1:%1"_s.arg(port));
    server.replace("/srv/catalogue;"_s, "%1www;\n%2"_s.arg(directory, directives));
    QString temporary;
    for (const char *kind : {"client_body", "proxy", "fastcgi", "uwsgi", "scgi"})
        temporary += "%1_temp_path temporary;\n"_s.arg(QLatin1String(kind));
    QFile file(directory + "nginx.conf"_s);
    file.open(QIODevice::WriteOnly);
    file.write(QStringLiteral(R"(daemon off; master_process off; pid nginx.pid;
        events {}
        http {
            log_format test escape=none
                "$status;$request_uri;$http_if_none_match;$http_authorization;$sent_http_content_encoding";
            access_log access.log test;
            %1 %2
        })")
                   .arg(temporary, server)
                   .toUtf8());
}

} // namespace ts::pm::test
