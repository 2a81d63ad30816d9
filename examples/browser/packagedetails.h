#pragma once

#include <TamselPackageManager/PackageReference>

#include <QObject>
#include <QPointer>
#include <QStringList>
#include <QUrl>
#include <QVariantList>

namespace browser {

/**
 * What a page about one package shows beyond the fields that it knows by name.
 *
 * Ownership: does not own the reference; one that is destroyed reads as null.
 * Threads: the repository's thread.
 * Signals: detailsChanged() after each change of the reference's status, version or texts.
 * Errors: without a reference, or a package, everything is empty.
 */
class PackageDetails : public QObject
{
    Q_OBJECT
    Q_PROPERTY(ts::pm::PackageReference *packageReference READ packageReference WRITE setPackageReference
                   NOTIFY packageReferenceChanged)
    Q_PROPERTY(QString type READ type NOTIFY detailsChanged)
    /** Objects with "id", "name" and "category": first the categories, then the other keywords, by name. */
    Q_PROPERTY(QVariantList keywords READ keywords NOTIFY detailsChanged)
    /** Ids of the packages that the package requires directly. */
    Q_PROPERTY(QStringList required READ required NOTIFY detailsChanged)
    /** Objects with "key" and "value": the plain values of the manifest that no other part of a page shows.
     */
    Q_PROPERTY(QVariantList facts READ facts NOTIFY detailsChanged)
    /** Objects with "name", "size" in bytes and "url"; size -1 and no URL while the file is not installed. */
    Q_PROPERTY(QVariantList files READ files NOTIFY detailsChanged)
    /** Where the picture can be read. Does not change when the package has been installed meanwhile. */
    Q_PROPERTY(QUrl picture READ picture NOTIFY detailsChanged)

public:
    explicit PackageDetails(QObject *parent = nullptr);

    ts::pm::PackageReference *packageReference() const { return reference.data(); }
    void setPackageReference(ts::pm::PackageReference *packageReference);

    QString type() const { return packageType; }
    QVariantList keywords() const { return keywordList; }
    QStringList required() const { return requiredIds; }
    QVariantList facts() const { return factList; }
    QVariantList files() const { return fileList; }
    QUrl picture() const { return pictureUrl; }

Q_SIGNALS:
    void packageReferenceChanged();
    void detailsChanged();

private:
    void handleUpdate();
    void refresh();

    QPointer<ts::pm::PackageReference> reference;
    QString packageType;
    QVariantList keywordList;
    QStringList requiredIds;
    QVariantList factList;
    QVariantList fileList;
    QUrl pictureUrl;
};

} // namespace browser
