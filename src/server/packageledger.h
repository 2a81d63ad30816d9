#pragma once

#include "tamselpackagemanager_export.h"

#include <QByteArray>
#include <QHash>
#include <QMap>
#include <QString>
#include <QVector>

class QDir;

namespace ts::pm {

/** A text in the bytes of a ledger; not owned, not terminated. Null data stands for an absent text. */
struct TAMSELPACKAGEMANAGER_EXPORT Utf8String
{
    quint16 length = 0; ///< bytes
    const char *data = nullptr;

    /** The text up to its first NUL or its end; a null string for absent data. */
    QString toString() const;
};

/** One who may sign packages. */
struct IssuerEntry
{
    const unsigned char *signature = nullptr; ///< 64 bytes, by the root key over the bytes of publicKey
    Utf8String name;                          ///< for log lines only, as is secondName; not signed
    Utf8String secondName;
    Utf8String publicKey; ///< Ed25519, DER
};

struct KeywordEntry
{
    int type = 0; ///< a Keyword::Type, not checked
    Utf8String id;
    QMap<int, QVector<Utf8String>> names; ///< index of the language to values
};

struct PackageEntry
{
    const unsigned char *signature = nullptr; ///< 64 bytes, by the issuer over the package's statement
    quint16 typeIndex = 0;                    ///< below the number of types
    quint16 issuerIndex = 0;                  ///< below the number of issuers
    Utf8String id;
    Utf8String manifest;                            ///< JSON
    QHash<QByteArray, const unsigned char *> files; ///< path to the 28 bytes of the SHA-224 digest
};

struct LinkEntry
{
    quint32 type = 0;   ///< a Link type, not checked
    quint32 source = 0; ///< index among packages or keywords, not checked
    quint32 target = 0; ///< likewise
    quint8 flags = 0;   ///< low four bits: the source is a package; above 15: the target is one
};

/**
 * The catalogue of one package server: a binary document, checked and opened into tables. The format is told
 * in docs/ledger-format.md.
 *
 * Fields are read directly. A ledger whose valid is false is of no use, and its tables hold nothing that may
 * be read.
 *
 * Ownership: handed around in a QSharedPointer. All views and pointers in the tables point into data, so no
 * entry may outlive the ledger.
 * Threads: immutable, any thread, once made; to read and verify a document is work for a worker job. The
 * directory of a saved ledger is process-wide, locked by file.
 * Errors: a document that breaks a rule, or that holds a single bad signature, makes an invalid ledger, with
 * the reason logged in "tamsel.packageserver.ledger".
 */
class TAMSELPACKAGEMANAGER_EXPORT PackageLedger
{
public:
    /** An empty ledger, not valid. */
    PackageLedger();

    /** Parses a document that came with the entity tag \a etag, and verifies its signatures. */
    PackageLedger(const QByteArray &data, const QByteArray &etag);

    /** What \a held holds, valid or not, as a document that came with the entity tag \a etag. */
    PackageLedger(const PackageLedger &held, const QByteArray &etag);

    /**
     * Loads what persist() wrote to \a dir, verified like any other. Not valid, without a message, if none is
     * there. Blocks as persist() does, and has others wait until the signatures are verified.
     */
    explicit PackageLedger(const QDir &dir);

    /**
     * Parses a document that came with the entity tag \a etag, and verifies its signatures, in place of what
     * the ledger held. Not for a ledger that is shared. Returns valid; an empty document is not valid,
     * without a message.
     */
    bool parse(const QByteArray &data, const QByteArray &etag);

    /** The first package with that id, or null. */
    const PackageEntry *findPackage(const QByteArray &id) const;

    /**
     * Writes the document to \a dir, which is made if need be, for the next start. \a name is for the log.
     *
     * Returns true if a new file was written: not for an invalid ledger, not if a ledger with the same entity
     * tag is there, and not after an error, which is logged and leaves the old file as it was. Blocks while
     * another thread or process reads or writes the directory.
     */
    bool persist(const QDir &dir, const QString &name) const;

    bool valid = false;
    QByteArray etag;                        ///< as the server sent it
    QByteArray data;                        ///< the document
    QHash<QByteArray, QByteArray> segments; ///< tag of a section to a view that begins at the tag
    QVector<Utf8String> languages;
    QVector<Utf8String> types;
    QVector<IssuerEntry> issuers;
    QVector<KeywordEntry> keywords;
    QVector<PackageEntry> packages;
    QVector<LinkEntry> links;

private:
    struct Header;

    void clearTables();
    bool parse();
    bool parseHeader();
    bool parseOffsetTable(const Header &header, const char *document, unsigned int size);
    bool parseIssuers();
    bool parseIssuer(const char **cursor, const char *end);
    bool parseKeywords();
    bool parseKeyword(const char **cursor, const char *end, int *room);
    bool parsePackages();
    bool parsePackage(const char **cursor, const char *end);
    bool parseLinks();
    bool parseLink(const char **cursor, const char *end);
    bool verifySignatures();

    Q_DISABLE_COPY(PackageLedger)
};

} // namespace ts::pm

Q_DECLARE_TYPEINFO(ts::pm::Utf8String, Q_MOVABLE_TYPE);
Q_DECLARE_TYPEINFO(ts::pm::IssuerEntry, Q_MOVABLE_TYPE);
Q_DECLARE_TYPEINFO(ts::pm::KeywordEntry, Q_MOVABLE_TYPE);
Q_DECLARE_TYPEINFO(ts::pm::PackageEntry, Q_MOVABLE_TYPE);
Q_DECLARE_TYPEINFO(ts::pm::LinkEntry, Q_PRIMITIVE_TYPE);
