#include "ledger/couchdatabase.h"

#include "ledger/counted.h"
#include "ledger/latin1.h"

#include <TamselCrypto/JsonSignature>

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QSet>

#include <utility>

namespace ts::ledger {

namespace {

constexpr int largestBatch = 8 * 1024 * 1024; // bytes, unless a single document has more

constexpr QLatin1String idKey = latin1("_id");
constexpr QLatin1String revisionKey = latin1("_rev");
constexpr QLatin1String attachmentsKey = latin1("_attachments");

// Numbers may come back in another notation.
bool isSame(const QJsonObject &ours, QJsonObject theirs)
{
    theirs.remove(revisionKey);
    theirs.remove(attachmentsKey);
    return crypto::JsonSignature::toByteArray(ours) == crypto::JsonSignature::toByteArray(theirs);
}

// The stubs of the attachments that the database has already, by name.
QJsonObject keptAttachments(const CouchDocument &document, const QJsonObject &present)
{
    const QJsonObject stubs = present.value(attachmentsKey).toObject();
    QJsonObject kept;
    for (const CouchAttachment &attachment : document.attachments) {
        const QJsonObject stub = stubs.value(attachment.file.name).toObject();
        if (stub.value(QLatin1String("digest")).toString() == attachment.digest())
            kept.insert(attachment.file.name, stub);
    }
    return kept;
}

CouchDocument designDocument(const QString &name)
{
    QFile file(QLatin1String(":/couchdb/_design/") + name);
    return {file.open(QIODevice::ReadOnly) ? QJsonDocument::fromJson(file.readAll()).object() : QJsonObject(),
            {}};
}

} // namespace

CouchDatabase::CouchDatabase(const QUrl &url, const QByteArray &credentials)
    : url(url.adjusted(QUrl::StripTrailingSlash))
    , client(credentials)
{
}

bool CouchDatabase::upload(const QVector<CouchDocument> &documents, bool prune)
{
    if (!fetchPresent() || !uploadDesigns())
        return false;
    for (const CouchDocument &document : documents) {
        if (!uploadDocument(document))
            return false;
    }
    return deleteVanished(documents, prune) && flush();
}

bool CouchDatabase::fail(const QString &error)
{
    problems.append(error);
    return false;
}

QUrl CouchDatabase::below(const QString &path) const
{
    return QUrl(url.toString(QUrl::FullyEncoded) + QLatin1Char('/') + path, QUrl::StrictMode);
}

// A null document, after an error, if the answer is not a good one in JSON.
QJsonDocument CouchDatabase::ask(const QByteArray &method, const QUrl &place, const QByteArray &json)
{
    const HttpAnswer answer = client.exchange(method, place, json);
    const QJsonDocument document = QJsonDocument::fromJson(answer.body);
    if (!answer.error.isNull())
        fail(answer.error);
    else if (answer.status >= 200 && answer.status < 300 && !document.isNull())
        return document;
    else
        fail(QStringLiteral("%1: answered with %2 %3")
                 .arg(place.toString(QUrl::RemoveQuery | QUrl::RemoveUserInfo),
                      QString::number(answer.status),
                      document.object().value(QLatin1String("reason")).toString()));
    return QJsonDocument();
}

bool CouchDatabase::fetchPresent()
{
    for (const QLatin1String prefix :
         {latin1("_design/"), latin1("package:"), latin1("keyword:"), latin1("link:")}) {
        if (!fetchPresent(prefix))
            return false;
    }
    return true;
}

// All ids with the prefix: those up to the one in which its last character is the next one.
bool CouchDatabase::fetchPresent(const QString &prefix)
{
    QString end = prefix;
    end[end.size() - 1] = QChar(end.back().unicode() + 1);
    const auto encoded = [](const QString &text) {
        return QString::fromLatin1(QUrl::toPercentEncoding(QLatin1Char('"') + text + QLatin1Char('"')));
    };
    const QJsonDocument answer = ask(
        "GET", below(QStringLiteral("_all_docs?include_docs=true&startkey=%1&endkey=%2&inclusive_end=false")
                         .arg(encoded(prefix), encoded(end))));
    const QJsonArray rows = answer.object().value(QLatin1String("rows")).toArray();
    for (const QJsonValue &row : rows)
        present.insert(row.toObject().value(QLatin1String("id")).toString(),
                       row.toObject().value(QLatin1String("doc")).toObject());
    return !answer.isNull();
}

bool CouchDatabase::uploadDesigns()
{
    return uploadDocument(designDocument(QStringLiteral("tamsel")))
           && uploadDocument(designDocument(QStringLiteral("melvoro")));
}

bool CouchDatabase::uploadDocument(const CouchDocument &document)
{
    const QJsonObject old = present.value(document.id());
    const QJsonObject kept = keptAttachments(document, old);
    const bool hasAllFiles = kept.size() == document.attachments.size()
                             && kept.size() == old.value(attachmentsKey).toObject().size();
    if (hasAllFiles && isSame(document.body, old)) {
        ++outcome.unchanged;
        return true;
    }
    QString error;
    const QByteArray json = document.toJson(old.value(revisionKey).toString(), kept, &error);
    ++outcome.written;
    return error.isNull() ? queue(json) : fail(error);
}

bool CouchDatabase::deleteVanished(const QVector<CouchDocument> &documents, bool prune)
{
    QSet<QString> ids;
    for (const CouchDocument &document : documents)
        ids.insert(document.id());
    for (auto old = present.cbegin(); old != present.cend(); ++old) {
        if (ids.contains(old.key()) || old.key().startsWith(QLatin1Char('_')))
            continue;
        ++(prune ? outcome.deleted : outcome.vanished);
        const QJsonObject grave{
            {idKey, old.key()}, {revisionKey, old->value(revisionKey)}, {QStringLiteral("_deleted"), true}};
        if (prune && !queue(QJsonDocument(grave).toJson(QJsonDocument::Compact)))
            return false;
    }
    return true;
}

bool CouchDatabase::queue(const QByteArray &json)
{
    if (!batch.isEmpty() && batch.size() + json.size() > largestBatch && !flush())
        return false;
    batch += (batch.isEmpty() ? QByteArray() : QByteArray(",")) + json;
    ++batchSize;
    return true;
}

// The database takes or refuses each document for itself.
bool CouchDatabase::flush()
{
    if (batch.isEmpty())
        return true;
    const QUrl place = below(QStringLiteral("_bulk_docs"));
    const QJsonDocument answer = ask("POST", place, "{\"docs\":[" + batch + "]}");
    const int sent = std::exchange(batchSize, 0);
    batch.clear();
    const QJsonArray results = answer.array();
    if (!answer.isNull() && results.size() != sent)
        fail(QStringLiteral("%1: answered for %2 of %3")
                 .arg(place.toString(QUrl::RemoveUserInfo), QString::number(results.size()),
                      counted(sent, latin1("document"))));
    for (const QJsonValue &result : results) {
        const QJsonObject row = result.toObject();
        if (row.contains(QLatin1String("error")))
            fail(QStringLiteral("%1: %2").arg(row.value(QLatin1String("id")).toString(),
                                              row.value(QLatin1String("reason")).toString()));
    }
    return !answer.isNull() && problems.isEmpty();
}

} // namespace ts::ledger
