#include "ledger/treeserver.h"

#include "ledger/console.h"

#include <QCryptographicHash>
#include <QFile>

#include <algorithm>
#include <chrono>
#include <memory>

#include <httplib.h>

namespace ts::ledger {

namespace {

constexpr char loopback[] = "127.0.0.1";
constexpr char binary[] = "application/octet-stream";
constexpr int keepAliveTimeout = 1; // seconds; as long as an idle connection can delay the end

// True if the client has the content with that tag. A weak tag is as good as a strong one here.
bool hasAlready(const httplib::Request &request, const QByteArray &tag)
{
    const QByteArray known = QByteArray::fromStdString(request.get_header_value("If-None-Match"));
    const QList<QByteArray> candidates = known.split(',');
    return std::any_of(candidates.begin(), candidates.end(), [&tag](const QByteArray &candidate) {
        const QByteArray trimmed = candidate.trimmed();
        return trimmed == tag || trimmed == "W/" + tag || trimmed == "*";
    });
}

// True if there is nothing left to answer.
bool answerTag(const httplib::Request &request, httplib::Response &response, const QByteArray &hash)
{
    const QByteArray tag = '"' + hash + '"';
    response.set_header("ETag", tag.toStdString());
    if (!hasAlready(request, tag))
        return false;
    response.status = 304;
    return true;
}

} // namespace

TreeServer::TreeServer(const ServerTree &tree)
    : tree(tree)
    , server(new httplib::Server)
{
    server->set_keep_alive_timeout(keepAliveTimeout);
    // Without the option by which two servers could share a port.
    server->set_socket_options([](socket_t socket) {
        const int yes = 1;
        setsockopt(socket, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
    });
    server->Get("/api/v1/ledger", [this](const httplib::Request &request, httplib::Response &response) {
        answerLedger(request, response);
    });
    server->Get("/api/v1/ledger/([0-9a-f]{56})",
                [this](const httplib::Request &request, httplib::Response &response) {
                    answerFile(request, response);
                });
}

TreeServer::~TreeServer()
{
    stop();
}

void TreeServer::logRequests()
{
    server->set_logger([](const httplib::Request &request, const httplib::Response &response) {
        Console::print(QStringLiteral("%1 %2 %3")
                           .arg(QString::fromStdString(request.method),
                                Console::printable(QString::fromStdString(request.path)),
                                QString::number(response.status)));
    });
}

int TreeServer::start(int port)
{
    const int bound = port == 0                              ? server->bind_to_any_port(loopback)
                      : server->bind_to_port(loopback, port) ? port
                                                             : -1;
    if (bound < 0)
        return bound;
    listener = std::thread([this] { server->listen_after_bind(); });
    // A server that is told to stop before it has begun would not hear it.
    while (!server->is_running())
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    return bound;
}

void TreeServer::stop()
{
    if (!listener.joinable())
        return;
    server->stop();
    listener.join();
}

// Read as a whole: tag and content belong together even if a new ledger comes meanwhile.
void TreeServer::answerLedger(const httplib::Request &request, httplib::Response &response) const
{
    QFile file(tree.ledger());
    if (!file.open(QIODevice::ReadOnly)) {
        response.status = 404;
        return;
    }
    const QByteArray ledger = file.readAll();
    response.set_header("Cache-Control", "no-cache");
    if (!answerTag(request, response, QCryptographicHash::hash(ledger, QCryptographicHash::Sha224).toHex()))
        response.set_content(ledger.constData(), size_t(ledger.size()), binary);
}

// The name of a file is the digest of its content, so that it never changes.
void TreeServer::answerFile(const httplib::Request &request, httplib::Response &response) const
{
    const QByteArray id = QByteArray::fromStdString(request.matches[1]);
    const auto file = std::make_shared<QFile>(tree.file(QString::fromLatin1(id)));
    if (!file->open(QIODevice::ReadOnly)) {
        response.status = 404;
        return;
    }
    response.set_header("Cache-Control", "public, max-age=31536000, immutable");
    if (answerTag(request, response, id))
        return;
    const qint64 size = file->size();
    if (size == 0)
        return response.set_content("", binary);
    response.set_content_provider(
        size_t(size), binary, [file](size_t offset, size_t length, httplib::DataSink &sink) {
            constexpr size_t largestPiece = 65536; // bytes
            const QByteArray piece =
                file->seek(qint64(offset)) ? file->read(qint64(qMin(length, largestPiece))) : QByteArray();
            return !piece.isEmpty() && sink.write(piece.constData(), size_t(piece.size()));
        });
}

} // namespace ts::ledger
