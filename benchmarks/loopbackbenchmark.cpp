// The loopback server against nginx with one worker: the same files, the same client, the same run.
// - serve: one round of requests over four connections that stay open;
// - stall: the longest time for which the event loop of the server does nothing else while it answers.

#include "support/loopbackclient.h"
#include "support/ratioreporter.h"

#include <TamselPackageManager/FileProxyServer>
#include <TamselPackageManager/IFileProxy>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QProcess>
#include <QRandomGenerator>
#include <QSemaphore>
#include <QStandardPaths>
#include <QTcpServer>
#include <QTemporaryDir>
#include <QThread>
#include <QTimer>

#include <algorithm>
#include <atomic>
#include <ctime>
#include <memory>

namespace {

using namespace ts::pm;
using namespace ts::pm::bench;

constexpr int connectionCount = 4;
constexpr int fileSizes[] = {64 << 10, 1 << 20, 50 << 20};

int requestsPerRound(int fileSize)
{
    return std::clamp((100 << 20) / fileSize, 8, 1000);
}

/** A directory with one file for each size, its name being the size. */
class Files
{
public:
    Files()
    {
        // A worker of nginx may run as somebody else.
        QFile::setPermissions(directory.path(),
                              QFile::permissions(directory.path()) | QFile::ReadOther | QFile::ExeOther);
        for (const int size : fileSizes) {
            QByteArray content(size, Qt::Uninitialized);
            QRandomGenerator(quint32(size)).fillRange(reinterpret_cast<quint32 *>(content.data()), size / 4);
            QFile file(path(QString::number(size)));
            if (!file.open(QIODevice::WriteOnly) || file.write(content) != size)
                qFatal("Cannot write %s", qPrintable(file.fileName()));
        }
    }

    QString path(const QString &name) const { return directory.filePath(name); }

private:
    QTemporaryDir directory;
};

const Files &files()
{
    static const Files files;
    return files;
}

class FilesProxy : public IFileProxy
{
public:
    explicit FilesProxy(FileProxyServer *server)
        : server(server)
        , key(server->install(this))
    {
    }

    void requestFile(const QUrl &url) override
    {
        server->resolveFile(key, url, 200, files().path(url.path()));
    }

    FileProxyServer *const server;
    const QString key;
};

/** Looks at the clock once in a millisecond: on wall time and on the time that the thread itself computed. */
class StallProbe : public QObject
{
public:
    StallProbe()
    {
        timer.setTimerType(Qt::PreciseTimer);
        connect(&timer, &QTimer::timeout, this, &StallProbe::look);
        timer.start(1);
        wall.start();
    }

    std::atomic<qint64> longestWall{0}; // in ns
    std::atomic<qint64> longestComputing{0};

private:
    static qint64 threadTime()
    {
        timespec time{};
        clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
        return qint64(time.tv_sec) * 1000000000 + time.tv_nsec;
    }

    void look()
    {
        const qint64 now = threadTime();
        longestWall = std::max<qint64>(longestWall, wall.nsecsElapsed());
        longestComputing = std::max<qint64>(longestComputing, now - computed);
        wall.restart();
        computed = now;
    }

    QTimer timer;
    QElapsedTimer wall;
    qint64 computed = threadTime();
};

/** Our server, on a thread of its own, as the client needs one too. */
class ServerThread : public QThread
{
public:
    explicit ServerThread(bool withProbe = false)
        : withProbe(withProbe)
    {
        start();
        ready.acquire();
    }

    ~ServerThread() override
    {
        quit();
        wait();
    }

    quint16 port = 0;
    QByteArray prefix;
    std::unique_ptr<StallProbe> probe;

private:
    void run() override
    {
        FileProxyServer server;
        const FilesProxy proxy(&server);
        if (withProbe)
            probe = std::make_unique<StallProbe>();
        port = server.serverPort();
        prefix = '/' + proxy.key.toLatin1() + '/';
        ready.release();
        exec();
        probe.reset();
    }

    const bool withProbe;
    QSemaphore ready;
};

quint16 freePort()
{
    QTcpServer server;
    server.listen(QHostAddress::LocalHost, 0);
    return server.serverPort();
}

class Nginx
{
public:
    Nginx()
    {
        program = QStandardPaths::findExecutable(QStringLiteral("nginx"), {QStringLiteral("/usr/sbin")});
        if (program.isEmpty())
            return;
        QFile config(directory.filePath(QStringLiteral("nginx.conf")));
        if (!config.open(QIODevice::WriteOnly))
            return;
        config.write(configuration());
        config.close();
        process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        process.start(program, {QStringLiteral("-p"), directory.path(), QStringLiteral("-e"),
                                QStringLiteral("error.log"), QStringLiteral("-c"), config.fileName()});
        for (int i = 0; i < 100 && !isRunning; ++i) {
            isRunning = LoopbackClient(port).isConnected();
            QThread::msleep(20);
        }
    }

    ~Nginx()
    {
        process.terminate();
        process.waitForFinished();
    }

    const quint16 port = freePort();
    bool isRunning = false;

private:
    QByteArray configuration() const
    {
        return "daemon off; worker_processes 1; pid nginx.pid; error_log error.log;\n"
               "events { worker_connections 64; }\n"
               "http {\n"
               "  access_log off; sendfile on; tcp_nopush on; keepalive_requests 1000000000;\n"
               "  client_body_temp_path body; proxy_temp_path proxy; fastcgi_temp_path fastcgi;\n"
               "  uwsgi_temp_path uwsgi; scgi_temp_path scgi;\n"
               "  server { listen 127.0.0.1:"
               + QByteArray::number(port) + "; root " + files().path(QString()).toUtf8() + "; }\n}\n";
    }

    QString program;
    QTemporaryDir directory;
    QProcess process;
};

// Each connection has one request under way at any time.
void measure(benchmark::State &state, quint16 port, const QByteArray &prefix)
{
    const auto size = int(state.range(0));
    const QByteArray request =
        "GET " + prefix + QByteArray::number(size) + " HTTP/1.1\r\nHost: localhost\r\n\r\n";
    std::vector<LoopbackClient> clients;
    for (int i = 0; i < connectionCount; ++i)
        clients.emplace_back(port);
    const int count = requestsPerRound(size);
    for (auto _ : state) {
        bool answered = true;
        for (int i = 0; i < count + connectionCount; ++i) {
            LoopbackClient &client = clients[size_t(i % connectionCount)];
            if (i >= connectionCount)
                answered = answered && client.receive() == size;
            if (i < count)
                answered = answered && client.send(request);
        }
        if (!answered) {
            state.SkipWithError("an answer is missing or has the wrong size");
            return;
        }
    }
    const auto requests = double(state.iterations()) * count;
    state.counters["requests/s"] = benchmark::Counter(requests, benchmark::Counter::kIsRate);
    state.counters["MB/s"] = benchmark::Counter(requests * size / 1e6, benchmark::Counter::kIsRate);
}

void nginx(benchmark::State &state)
{
    const Nginx nginx;
    if (nginx.isRunning)
        measure(state, nginx.port, "/");
    else
        state.SkipWithError("nginx is not installed, or does not start");
}

void server(benchmark::State &state)
{
    const ServerThread thread;
    measure(state, thread.port, thread.prefix);
}

void stall(benchmark::State &state)
{
    const ServerThread thread(true);
    measure(state, thread.port, thread.prefix);
    state.counters["stall ms"] = double(thread.probe->longestWall) / 1e6;
    state.counters["stall ms, computing"] = double(thread.probe->longestComputing) / 1e6;
}

void settings(benchmark::internal::Benchmark *benchmark)
{
    benchmark->Unit(benchmark::kMillisecond)->UseRealTime()->Repetitions(5)->ReportAggregatesOnly();
}

void allSizes(benchmark::internal::Benchmark *benchmark)
{
    for (const int size : fileSizes)
        benchmark->Arg(size);
    settings(benchmark);
}

BENCHMARK(nginx)->Name("serve/baseline")->Apply(allSizes);
BENCHMARK(server)->Name("serve/server")->Apply(allSizes);
BENCHMARK(stall)->Name("stall/server")->Arg(1 << 20)->Apply(settings);

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    return runBenchmarks(argc, argv);
}
