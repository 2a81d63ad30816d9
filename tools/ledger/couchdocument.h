#pragma once

#include "ledger/catalogue.h"
#include "ledger/problems.h"

#include <QByteArray>
#include <QJsonObject>
#include <QString>
#include <QVector>

namespace ts::ledger {

/** A file of a package as it is attached to the package's document. */
struct CouchAttachment
{
    CatalogueFile file;
    QByteArray md5; ///< 16 bytes

    /** As CouchDB tells the digest of an attachment: "md5-" and base64. */
    QString digest() const { return QStringLiteral("md5-") + QString::fromLatin1(md5.toBase64()); }
};

/** One record of a catalogue as a document of CouchDB. A value. */
struct CouchDocument
{
    QJsonObject body; ///< with "_id", without "_rev" and "_attachments"
    QVector<CouchAttachment> attachments;

    QString id() const { return body.value(QLatin1String("_id")).toString(); }

    /**
     * The whole document in JSON, with the content of its attachments. Those that \a kept names go as the
     * stubs that it holds: the database has their content. Null, with what went wrong in \a error, if a file
     * cannot be read or has changed.
     */
    QByteArray toJson(const QString &revision, const QJsonObject &kept, QString *error) const;
};

/**
 * The documents of a catalogue: "package:", "keyword:" and the record's id, or "link:" and its ends.
 *
 * Errors in \a problems: what CouchDB does not take, or applications do not read. Hashes all files, on the
 * global thread pool.
 */
QVector<CouchDocument> couchDocuments(const Catalogue &catalogue, Problems &problems);

} // namespace ts::ledger
