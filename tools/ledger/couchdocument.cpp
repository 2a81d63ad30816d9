#include "ledger/couchdocument.h"

#include "ledger/filecopy.h"
#include "ledger/latin1.h"
#include "ledger/progress.h"
#include "ledger/typenames.h"

#include <QCryptographicHash>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QSet>
#include <QtConcurrentMap>

namespace ts::ledger {

namespace {

constexpr qint64 largestAttachments = 536870912; // bytes of one document; they are sent in one piece
constexpr qint64 largestListing = 4194304;       // bytes; applications read no more
constexpr int revisionSize = 40;                 // bytes, for a document with years of history
constexpr int rowSize = 64;                      // bytes of a row of the listing beside its document

// CouchDB compresses what it takes for text, and tells the digest of the compressed content.
constexpr QLatin1String contentType = latin1("application/octet-stream");

QJsonValue formOf(const pm::KeywordInfo &keyword, const pm::LangString &string)
{
    if (keyword.type != pm::Keyword::Noun)
        return string.sg;
    return QJsonObject{{QStringLiteral("sg"), string.sg}, {QStringLiteral("pl"), string.pl}};
}

CouchDocument documentOf(const pm::KeywordInfo &keyword)
{
    QJsonObject body{{QStringLiteral("_id"), QLatin1String("keyword:") + keyword.id},
                     {QStringLiteral("keywordType"), keywordTypeName(keyword.type)}};
    if (keyword.type == pm::Keyword::Literal) {
        body.insert(QStringLiteral("string"), keyword.strings.value(0).sg);
        return {body, {}};
    }
    QJsonObject strings;
    for (const pm::LangString &string : keyword.strings) {
        QJsonArray forms = strings.value(string.language).toArray();
        forms.append(formOf(keyword, string));
        strings.insert(string.language, forms);
    }
    body.insert(QStringLiteral("strings"), strings);
    return {body, {}};
}

CouchDocument documentOf(const CataloguePackage &package)
{
    CouchDocument document;
    document.body = {{QStringLiteral("_id"), QLatin1String("package:") + package.info.id},
                     {QStringLiteral("packageType"), package.info.type},
                     {QStringLiteral("manifest"), package.manifest}};
    for (const CatalogueFile &file : package.files)
        document.attachments.append({file, QByteArray()});
    return document;
}

CouchDocument documentOf(const pm::LinkInfo &link)
{
    const QString type = linkTypeName(link.type);
    return {{{QStringLiteral("_id"), QStringLiteral("link:%1:%2:%3").arg(link.from, type, link.to)},
             {QStringLiteral("from"), link.from},
             {QStringLiteral("to"), link.to},
             {QStringLiteral("linkType"), type}},
            {}};
}

void check(const CataloguePackage &package, Problems &problems)
{
    qint64 size = 0;
    for (const CatalogueFile &file : package.files) {
        size += file.size;
        if (file.name.startsWith(QLatin1Char('_')))
            problems.addError(
                package.origin,
                QStringLiteral("CouchDB takes no attachment '%1': '_' comes first").arg(file.name));
    }
    if (size > largestAttachments)
        problems.addError(package.origin,
                          QStringLiteral("%1 bytes of files; at most %2 are possible in a document")
                              .arg(size)
                              .arg(largestAttachments));
}

void hashAttachments(QVector<CouchDocument> &documents, Problems &problems)
{
    QVector<CouchAttachment *> attachments;
    qint64 total = 0;
    for (CouchDocument &document : documents) {
        for (CouchAttachment &attachment : document.attachments) {
            attachments.append(&attachment);
            total += attachment.file.size;
        }
    }
    Progress progress(QStringLiteral("Reading files"), total);
    QtConcurrent::blockingMap(attachments, [&progress](CouchAttachment *attachment) {
        QString error; // told when the content is read again
        attachment->md5 = FileCopy::digest(attachment->file.path, QCryptographicHash::Md5, &error,
                                           [&progress](qint64 bytes) { progress.advance(bytes); });
    });
    for (const CouchAttachment *attachment : qAsConst(attachments)) {
        if (attachment->md5.isNull())
            problems.addError(attachment->file.path, QStringLiteral("cannot be read"));
    }
}

QJsonObject stubOf(const CouchAttachment &attachment)
{
    return {{QStringLiteral("content_type"), contentType},
            {QStringLiteral("digest"), attachment.digest()},
            {QStringLiteral("length"), attachment.file.size},
            {QStringLiteral("revpos"), 1000},
            {QStringLiteral("stub"), true}};
}

// What the view that lists all documents is going to answer, in bytes, rather more than less.
qint64 listingSize(const QVector<CouchDocument> &documents)
{
    qint64 size = rowSize;
    for (const CouchDocument &document : documents) {
        QJsonObject value = document.body;
        value.insert(QStringLiteral("_rev"), QString(revisionSize, QLatin1Char('x')));
        QJsonObject stubs;
        for (const CouchAttachment &attachment : document.attachments)
            stubs.insert(attachment.file.name, stubOf(attachment));
        if (!stubs.isEmpty())
            value.insert(QStringLiteral("_attachments"), stubs);
        const QString type = document.body.value(QLatin1String("packageType")).toString();
        size += QJsonDocument(value).toJson(QJsonDocument::Compact).size() + document.id().toUtf8().size()
                + type.toUtf8().size() + rowSize;
    }
    return size;
}

} // namespace

QByteArray CouchDocument::toJson(const QString &revision, const QJsonObject &kept, QString *error) const
{
    QJsonObject files = kept;
    for (const CouchAttachment &attachment : attachments) {
        if (kept.contains(attachment.file.name))
            continue;
        QFile file(attachment.file.path);
        const QByteArray content = file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
        if (QCryptographicHash::hash(content, QCryptographicHash::Md5) != attachment.md5) {
            *error =
                QStringLiteral("%1: the file cannot be read, or has changed meanwhile").arg(file.fileName());
            return QByteArray();
        }
        files.insert(attachment.file.name,
                     QJsonObject{{QStringLiteral("content_type"), contentType},
                                 {QStringLiteral("data"), QString::fromLatin1(content.toBase64())}});
    }
    QJsonObject whole = body;
    if (!revision.isEmpty())
        whole.insert(QStringLiteral("_rev"), revision);
    if (!files.isEmpty())
        whole.insert(QStringLiteral("_attachments"), files);
    return QJsonDocument(whole).toJson(QJsonDocument::Compact);
}

QVector<CouchDocument> couchDocuments(const Catalogue &catalogue, Problems &problems)
{
    QVector<CouchDocument> documents;
    for (const CatalogueKeyword &keyword : catalogue.keywords)
        documents.append(documentOf(keyword.info));
    for (const CataloguePackage &package : catalogue.packages) {
        check(package, problems);
        documents.append(documentOf(package));
    }
    QSet<QString> links;
    for (const CatalogueLink &link : catalogue.links) {
        const CouchDocument document = documentOf(link.info);
        if (!links.contains(document.id())) // the same link twice says no more than once
            documents.append(document);
        links.insert(document.id());
    }
    hashAttachments(documents, problems);
    if (const qint64 size = listingSize(documents); size > largestListing)
        problems.addError(QStringLiteral("The listing of all documents"),
                          QStringLiteral("about %1 bytes; applications read no more than %2")
                              .arg(size)
                              .arg(largestListing));
    return documents;
}

} // namespace ts::ledger
