#pragma once

#include "ledger/couchdocument.h"
#include "ledger/httpclient.h"

#include <QHash>
#include <QJsonObject>
#include <QStringList>
#include <QUrl>

namespace ts::ledger {

/**
 * Brings the documents of a catalogue into a CouchDB database, together with the views by which applications
 * read them.
 *
 * Writes only what is new or has changed, so that it can be done again at any time. A document is replaced as
 * a whole, files included; while several are, applications may read old and new ones side by side. Documents
 * of other kinds are left alone.
 *
 * Threads: one, on which events are handled.
 * Errors: see errors(); what was written by then stays.
 */
class CouchDatabase
{
public:
    struct Result
    {
        int written = 0;
        int unchanged = 0;
        int deleted = 0;
        int vanished = 0; ///< documents that are not in the catalogue, and stayed
    };

    /** \a credentials as "user:password", or empty. */
    CouchDatabase(const QUrl &url, const QByteArray &credentials);

    /** With \a prune, packages, keywords and links go that the catalogue has not. True unless it failed. */
    bool upload(const QVector<CouchDocument> &documents, bool prune);

    Result result() const { return outcome; }
    QStringList errors() const { return problems; }

private:
    bool fail(const QString &error);
    QUrl below(const QString &path) const;
    QJsonDocument ask(const QByteArray &method, const QUrl &url, const QByteArray &json = {});
    bool fetchPresent();
    bool fetchPresent(const QString &prefix);
    bool uploadDesigns();
    bool uploadDocument(const CouchDocument &document);
    bool deleteVanished(const QVector<CouchDocument> &documents, bool prune);
    bool queue(const QByteArray &json);
    bool flush();

    const QUrl url;
    HttpClient client;
    QHash<QString, QJsonObject> present; // documents in the database, by id
    QByteArray batch;                    // documents in JSON, with commas between them
    int batchSize = 0;                   // documents
    Result outcome;
    QStringList problems;
};

} // namespace ts::ledger
