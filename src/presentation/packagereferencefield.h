#pragma once

#include "tamselpackagemanager_export.h"

#include <TamselDataCore/DataField>

#include <QScopedPointer>
#include <QStringList>

namespace ts::pm {

class PackageReferenceFieldPrivate;

/**
 * A field of documents that holds a link to a package. Its values are PackageReference pointers; in the
 * document stands the text form of the link, see PackageReferenceType.
 *
 * Ownership: the parent's; references belong to their repository.
 * Threads: repository thread only, which has to be that of the documents.
 * Errors: a link that leads nowhere, or to an object of another class, reads as a null PackageReference. What
 * is no link to a package converts to a null ts::data::LinkedDocument.
 */
class TAMSELPACKAGEMANAGER_EXPORT PackageReferenceField : public ts::data::DataField
{
    Q_OBJECT
    /**
     * The types of packages that a user interface should offer for this field. Empty at first. Has no effect
     * on reading and writing: a document may link to a package of any type.
     */
    Q_PROPERTY(
        QStringList acceptedTypes READ acceptedTypes WRITE setAcceptedTypes NOTIFY acceptedTypesChanged)

public:
    explicit PackageReferenceField(QObject *parent = nullptr);
    ~PackageReferenceField() override;

    QStringList acceptedTypes() const;
    void setAcceptedTypes(const QStringList &types);

    /** Whether both hold the same object; true for two values without an object. */
    bool compare(const QVariant &a, const QVariant &b) const override;
    QVariant convert(const QVariant &value) const override;
    QVariant read(ts::data::LinkedDocument *document, const QString &path) const override;
    void write(ts::data::LinkedDocument *document, const QString &path, const QVariant &value) override;

Q_SIGNALS:
    void acceptedTypesChanged();

private:
    QScopedPointer<PackageReferenceFieldPrivate> d;
};

} // namespace ts::pm
