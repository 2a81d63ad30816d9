#pragma once

#include "repository/packagerecords.h"

#include <QByteArray>
#include <QJsonObject>
#include <QString>
#include <QVector>

namespace ts::ledger {

// What a publisher's directory holds, as CatalogueReader has checked it. "origin" is the place of a record in
// the directory, for messages. Plain values.

constexpr qint64 largestFile = 0x7FFFFFFF - 64; // bytes; applications fetch no more of a file

struct CatalogueFile
{
    QString name;
    QString path;      ///< absolute
    qint64 size = 0;   ///< bytes
    QByteArray digest; ///< 28 bytes, SHA-224

    /** The name under which clients ask a server for the file: the digest in lower-case hexadecimal. */
    QString id() const { return QString::fromLatin1(digest.toHex()); }
};

struct CataloguePackage
{
    pm::PackageInfo info;
    QJsonObject manifest;
    QVector<CatalogueFile> files; ///< by name
    QString origin;
};

struct CatalogueKeyword
{
    pm::KeywordInfo info;
    QString origin;
};

struct CatalogueLink
{
    pm::LinkInfo info;
    QString origin;
};

/** Sorted throughout, so that the same directory always gives the same catalogue. */
struct Catalogue
{
    QVector<CataloguePackage> packages; ///< by type, then by id
    QVector<CatalogueKeyword> keywords; ///< by id
    QVector<CatalogueLink> links;       ///< by ends, then by type
};

} // namespace ts::ledger
