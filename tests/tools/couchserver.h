#pragma once

#include <QJsonObject>
#include <QMap>
#include <QMutex>
#include <QStringList>

#include <thread>

#include <httplib.h>

namespace ts::pm::test {

/** As much of a CouchDB with one database as an upload of documents needs. Answers on threads of its own. */
class CouchServer
{
public:
    CouchServer();
    ~CouchServer();

    QString url() const { return QStringLiteral("http://127.0.0.1:%1/db").arg(port); }

    QStringList ids();
    QJsonObject document(const QString &id);

    /** Names of the attachments whose content has come since the last call. */
    QStringList takeReceived();

private:
    QJsonArray list(const QString &first, const QString &end);
    QJsonObject store(QJsonObject document);
    QJsonObject stubs(const QJsonObject &attachments, const QJsonObject &old);

    httplib::Server server;
    std::thread thread;
    int port = 0;
    QMutex mutex; // guards what follows
    QMap<QString, QJsonObject> documents;
    QStringList received;
    int revision = 0;
};

} // namespace ts::pm::test
