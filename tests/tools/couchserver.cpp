#include "couchserver.h"

#include "support/literals.h"

#include <QCryptographicHash>
#include <QJsonArray>
#include <QJsonDocument>

namespace ts::pm::test {

namespace {

// The text that a parameter of a query holds in JSON.
QString parameter(const httplib::Request &request, const char *name)
{
    const QByteArray json = '[' + QByteArray::fromStdString(request.get_param_value(name)) + ']';
    return QJsonDocument::fromJson(json).array().at(0).toString();
}

} // namespace

CouchServer::CouchServer()
{
    server.Get("/db/_all_docs", [this](const httplib::Request &request, httplib::Response &response) {
        const QJsonObject answer{
            {"rows"_s, list(parameter(request, "startkey"), parameter(request, "endkey"))}};
        response.set_content(QJsonDocument(answer).toJson().toStdString(), "application/json");
    });
    server.Post("/db/_bulk_docs", [this](const httplib::Request &request, httplib::Response &response) {
        QJsonArray results;
        const QJsonObject body = QJsonDocument::fromJson(QByteArray::fromStdString(request.body)).object();
        for (const QJsonValue &value : body["docs"_s].toArray())
            results.append(store(value.toObject()));
        response.status = 201;
        response.set_content(QJsonDocument(results).toJson().toStdString(), "application/json");
    });
    port = server.bind_to_any_port("127.0.0.1");
    thread = std::thread([this] { server.listen_after_bind(); });
    while (!server.is_running())
        std::this_thread::yield();
}

CouchServer::~CouchServer()
{
    server.stop();
    thread.join();
}

QStringList CouchServer::ids()
{
    const QMutexLocker locker(&mutex);
    return documents.keys();
}

QJsonObject CouchServer::document(const QString &id)
{
    const QMutexLocker locker(&mutex);
    return documents.value(id);
}

QStringList CouchServer::takeReceived()
{
    const QMutexLocker locker(&mutex);
    return std::exchange(received, {});
}

QJsonArray CouchServer::list(const QString &first, const QString &end)
{
    const QMutexLocker locker(&mutex);
    QJsonArray rows;
    for (auto document = documents.lowerBound(first); document != documents.lowerBound(end); ++document)
        rows.append(QJsonObject{{"id"_s, document.key()}, {"doc"_s, *document}});
    return rows;
}

QJsonObject CouchServer::store(QJsonObject document)
{
    const QMutexLocker locker(&mutex);
    const QString id = document.value("_id"_s).toString();
    const QJsonObject old = documents.take(id);
    if (document.value("_rev"_s) != old.value("_rev"_s)) {
        documents.insert(id, old);
        return {{"id"_s, id}, {"error"_s, "conflict"_s}, {"reason"_s, "Document update conflict"_s}};
    }
    const QJsonObject files =
        stubs(document.value("_attachments"_s).toObject(), old["_attachments"_s].toObject());
    document["_rev"_s] = QString::number(++revision);
    if (!files.isEmpty())
        document["_attachments"_s] = files;
    if (!document.contains("_deleted"_s))
        documents.insert(id, document);
    return {{"id"_s, id}, {"ok"_s, true}};
}

QJsonObject CouchServer::stubs(const QJsonObject &attachments, const QJsonObject &old)
{
    QJsonObject result;
    for (auto file = attachments.begin(); file != attachments.end(); ++file) {
        const QJsonObject sent = file.value().toObject();
        const QByteArray content = QByteArray::fromBase64(sent["data"_s].toString().toLatin1());
        const QByteArray digest = QCryptographicHash::hash(content, QCryptographicHash::Md5).toBase64();
        if (!sent.contains("stub"_s))
            received.append(file.key());
        result[file.key()] =
            sent.contains("stub"_s)
                ? old[file.key()]
                : QJsonObject{{"stub"_s, true}, {"digest"_s, QString::fromLatin1("md5-" + digest)}};
    }
    return result;
}

} // namespace ts::pm::test
