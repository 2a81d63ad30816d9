#pragma once

#include "tamseldatacore_export.h"

#include <QObject>
#include <QScopedPointer>
#include <QVariant>

namespace ts::data {

class DataFieldPrivate;
class LinkedDocument;

/**
 * One field of a kind of documents: how the value under its name is read, written and compared. This class
 * handles plain JSON values; derive from it for values of another type.
 *
 * Ownership: the parent's. Knows no document; each call names the one that it is about.
 * Threads: that of the documents.
 * Errors: none; a null document reads as an invalid value and takes none.
 */
class TAMSELDATACORE_EXPORT DataField : public QObject
{
    Q_OBJECT
    /** The key in the documents. Null at first. */
    Q_PROPERTY(QString name READ name WRITE setName NOTIFY nameChanged)

public:
    explicit DataField(QObject *parent = nullptr);
    ~DataField() override;

    QString name() const;
    void setName(const QString &name);

    /** Whether the two stand for the same value. */
    virtual bool compare(const QVariant &a, const QVariant &b) const;

    /** \a value in the type that read() returns. */
    virtual QVariant convert(const QVariant &value) const;

    /** Whether \a value may be written to \a document; true for any but a null document. */
    virtual bool acceptsValue(ts::data::LinkedDocument *document, const QVariant &value) const;

    /** The value of this field in the object at \a path. */
    virtual QVariant read(ts::data::LinkedDocument *document, const QString &path) const;

    /** Makes \a value that of this field in the object at \a path. An invalid value removes the key. */
    virtual void write(ts::data::LinkedDocument *document, const QString &path, const QVariant &value);

Q_SIGNALS:
    void nameChanged();

private:
    QScopedPointer<DataFieldPrivate> d;
};

} // namespace ts::data
