#pragma once

#include "tamseldatacore_export.h"

#include <QJsonObject>
#include <QJsonValue>
#include <QObject>
#include <QScopedPointer>

namespace ts::data {

class LinkedDocumentPrivate;

/**
 * A document of JSON data, which can hold links to objects outside it.
 *
 * Values are addressed by a path and a key. A path names nested objects, their keys separated with "/"; the
 * empty path is the document itself. Keys with a "/" in them are out of reach as parts of a path, not as
 * keys.
 *
 * A link is a string value, the text form of a reference: "ref:", the number of the reference type, ":" and
 * the percent-encoded identifier of the object, as in "ref:1:trail-42". The types are those that were made
 * known with registerReferenceType().
 *
 * Ownership: documents that Context::openDocument() returns belong to the context; any other to its parent.
 * Objects that it links to are not owned.
 * Threads: the thread of its context.
 * Errors: none; what is not there reads as undefined, a text that is no reference decodes to null.
 * It keeps no history and writes nothing back to a database.
 */
class TAMSELDATACORE_EXPORT LinkedDocument : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QString id READ id CONSTANT)
    /** False until data have come for the first time. */
    Q_PROPERTY(bool loaded READ isLoaded NOTIFY loaded)
    Q_PROPERTY(QJsonObject data READ data NOTIFY dataChanged)

public:
    explicit LinkedDocument(const QString &id, QObject *parent = nullptr);
    ~LinkedDocument() override;

    QString id() const;
    bool isLoaded() const;
    QJsonObject data() const;

    /**
     * Takes on the new revision of its data, in place of all that it has. The objects that it links to are
     * attached first, so that they are there when dataChanged() comes.
     */
    void setData(const QJsonObject &data);

    /** The value under \a key of the object at \a path; undefined if there is none. */
    QJsonValue getStructValue(const QString &path, const QString &key) const;

    /**
     * Stores \a value under \a key of the object at \a path. Objects that the path lacks are made, and what
     * is no object on the way is replaced by one. An undefined \a value removes the key and makes nothing.
     */
    void setStructValue(const QString &path, const QString &key, const QJsonValue &value);

    /**
     * The text form of a link to \a object. Empty for null, for an object of a class that no reference type
     * stands for, and if its type does not allow the link.
     */
    QString encodeReference(QObject *object);

    /** The object that \a text is a link to; null if there is none, or if it is no link. Not owned. */
    QObject *decodeReference(const QString &text) const;

    /**
     * The object that stands behind the document: its parent, which normally is the context. Reference types
     * look for the interfaces there that lead to their objects. May be null.
     */
    virtual QObject *owningContext() const;

Q_SIGNALS:
    /** The first data have come. dataChanged() follows. */
    void loaded();
    void dataChanged();

private:
    QScopedPointer<LinkedDocumentPrivate> d;
};

} // namespace ts::data
