#pragma once

#include "tamseldatacore_export.h"

#include <QObject>
#include <QScopedPointer>
#include <QUrl>

class QJsonObject;

namespace ts::data {

class ContextPrivate;
class LinkedDocument;
class Loader;

/**
 * The documents that an application has open, together with the database that they belong to.
 *
 * A document is opened at once and gets its data later, from the loader that takes care of it: loaders are
 * asked in descending priority, those of equal priority in the order in which they were made, until one says
 * yes. A document that nobody takes care of is offered, from the event loop, to each loader that is made
 * later; so is one whose loader went away without a delivery.
 *
 * Applications derive from it to offer interfaces to what stands in the documents, such as the provider of
 * the packages that they link to.
 *
 * Ownership: owns its documents and, as QObject parent, its loaders.
 * Threads: one thread, that of all its documents and loaders.
 * Errors: none; a document without data stays unloaded.
 * It does not talk to the database itself: service URL and database name are there for those who do.
 */
class TAMSELDATACORE_EXPORT Context : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QUrl serviceUrl READ serviceUrl CONSTANT)
    Q_PROPERTY(QString database READ database CONSTANT)

public:
    Context(const QUrl &serviceUrl, const QString &database, QObject *parent = nullptr);
    ~Context() override;

    /** Where the data service is, without the name of the database. */
    QUrl serviceUrl() const;

    /** The name of the database at the service. */
    QString database() const;

    /**
     * The document \a id, opened at the first call. It lives as long as the context. Null for an empty id.
     *
     * A loader that has the data at hand delivers before this returns; otherwise see
     * LinkedDocument::loaded().
     */
    Q_INVOKABLE ts::data::LinkedDocument *openDocument(const QString &id);

    /** The document \a id if it is open and has its data, otherwise null. Opens nothing. */
    LinkedDocument *loadedDocument(const QString &id) const;

private:
    friend class Loader;
    void addLoader(Loader *loader);
    void removeLoader(Loader *loader);
    void deliver(const QString &id, const QJsonObject &data);

    QScopedPointer<ContextPrivate> d;
};

} // namespace ts::data
