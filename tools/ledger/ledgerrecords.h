#pragma once

#include <QByteArray>
#include <QString>
#include <QVector>

namespace ts::ledger {

// The records of a ledger as they stand in the document. Texts are bytes, UTF-8 where they come from a
// catalogue: what the format can carry, a record can hold. "origin" is for messages only: where a publisher
// finds what became the record, as in "packages/plant/oak". Plain values; any thread.

/** One who may sign packages. */
struct IssuerRecord
{
    QByteArray signature; ///< 64 bytes, by the root key over publicKey
    QByteArray name;
    QByteArray secondName;
    QByteArray publicKey; ///< DER
};

/** The values of a keyword in one language. */
struct TranslationRecord
{
    quint16 language = 0; ///< index into the languages
    /** Of a noun the singular, and behind a NUL the plural; at most 255. */
    QVector<QByteArray> values;
};

struct KeywordRecord
{
    quint8 type = 0; ///< a number of Keyword::Type
    QByteArray id;
    QVector<TranslationRecord> translations;
    QString origin;
};

struct FileRecord
{
    QByteArray digest; ///< 28 bytes, SHA-224
    QByteArray path;   ///< inside the package
};

struct PackageRecord
{
    quint16 type = 0;     ///< index into the types
    quint16 issuer = 0;   ///< index into the issuers
    QByteArray signature; ///< 64 bytes, by the issuer over the package's statement
    QByteArray id;
    QByteArray manifest; ///< JSON
    QVector<FileRecord> files;
    QString origin;
};

struct LinkRecord
{
    static constexpr quint8 FromPackage = 0x01; ///< in flags: the source is a package, not a keyword
    static constexpr quint8 ToPackage = 0x10;   ///< in flags: the target is a package, not a keyword

    quint8 type = 0; ///< a number of LinkType
    quint8 flags = 0;
    quint32 source = 0; ///< index among the packages or keywords
    quint32 target = 0; ///< likewise

    // As clients read the flags: any of the low, or of the high, four bits says so.
    bool startsAtPackage() const { return flags & 0x0F; }
    bool endsAtPackage() const { return flags & 0xF0; }
};

/** All that a ledger says. */
struct LedgerRecords
{
    QVector<IssuerRecord> issuers;
    QVector<QByteArray> languages;
    QVector<KeywordRecord> keywords;
    QVector<QByteArray> types;
    QVector<PackageRecord> packages;
    QVector<LinkRecord> links;
};

} // namespace ts::ledger
