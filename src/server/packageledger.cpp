#include "server/packageledger.h"

#include "logging_p.h"
#include "server/ledgercursor_p.h"
#include "server/ledgerformat_p.h"

#include <QElapsedTimer>
#include <QPair>
#include <QScopeGuard>
#include <QSet>

#include <algorithm>
#include <cstring>
#include <limits>

namespace ts::pm {

using namespace ledgerformat;

/** The first bytes of a document, as they stand there. */
struct PackageLedger::Header
{
    struct Entry
    {
        char tag[TagSize];
        uchar offset[4];
    };

    char magic[4];
    quint8 major;
    quint8 minor;
    Entry offsets[4];
};

namespace {

/** What a table can hold: Qt's containers end at 2 GiB, and a small record takes more room in memory than in
 * the document. */
template<typename Entry>
constexpr int maximumEntries = (std::numeric_limits<int>::max() - 64) / int(sizeof(Entry));

const QSet<QByteArray> &sectionTags()
{
    static const QSet<QByteArray> tags{QByteArray(IssuerTag), QByteArray(KeywordTag), QByteArray(PackageTag),
                                       QByteArray(LinkTag)};
    return tags;
}

/** Checks the section of an entry of the offset table, and gives the size that it declares. */
bool readSectionHead(const QByteArray &tag, quint32 offset, const char *document, unsigned int size,
                     quint32 *payload)
{
    if (!sectionTags().contains(tag)) {
        qCCritical(lcLedger) << "Invalid offset table entry" << tag;
        return false;
    }
    if (offset < HeaderSize || offset > size - SectionHeadSize) {
        qCCritical(lcLedger) << "Invalid offset" << offset << "for offset able entry" << tag;
        return false;
    }
    if (std::memcmp(document + offset, tag.constData(), TagSize) != 0) {
        qCCritical(lcLedger) << "Invalid offset" << offset << "for offset able entry" << tag
                             << "(No such section at that offset)";
        return false;
    }
    *payload = qFromLittleEndian<quint32>(document + offset + TagSize);
    if (offset + *payload >= size) {
        qCCritical(lcLedger) << "Segment" << tag << "has out of bounds section size" << *payload;
        return false;
    }
    return true;
}

/** Where a section begins in the document, and where the next one has to. */
using Extent = QPair<quint32, quint32>;

/** Whether no gap and no overlap is between sections, in whatever order they are given. */
bool areAdjacent(QVector<Extent> sections)
{
    std::sort(sections.begin(), sections.end());
    const auto isApart = [](const Extent &one, const Extent &next) { return one.second != next.first; };
    return std::adjacent_find(sections.cbegin(), sections.cend(), isApart) == sections.cend();
}

/** The payload of a section. */
struct Section
{
    const char *cursor = nullptr;
    const char *end = nullptr;
};

/** The payload of the section with that tag, which ends with the document at the latest: the size that a
 * section declares may reach up to 7 bytes further, or any distance if it overflows the sum in the check. */
Section section(const PackageLedger &ledger, const char *tag)
{
    const QByteArray view = ledger.segments.value(QByteArray::fromRawData(tag, TagSize));
    if (view.isEmpty())
        return Section(); // nothing declared, nothing to read; the view of no bytes points nowhere
    const char *head = view.constData();
    const char *begin = head + SectionHeadSize;
    const auto declared = qFromLittleEndian<quint32>(head + TagSize);
    const auto available = quint64(ledger.data.constData() + ledger.data.size() - begin);
    return {begin, begin + qMin(quint64(declared), available)};
}

/** Reads the forms of a keyword in one language. */
bool parseTranslation(LedgerCursor fields, int languageCount, KeywordEntry *keyword, int *room)
{
    quint16 language = 0;
    quint8 valueCount = 0;
    fields.read(&language);
    bool complete = fields.read(&valueCount);
    *room -= 1 + valueCount;
    if (language >= languageCount || *room < 0)
        return false;
    QVector<Utf8String> values;
    values.reserve(fields.plausible(valueCount, MinimumStringSize));
    for (int i = 0; i < valueCount; ++i) {
        Utf8String value;
        complete = fields.read(&value);
        values.append(value);
    }
    if (complete)
        keyword->names.insert(language, values);
    return complete;
}

// A table whose keys collide is slow enough to hold up a thread for hours, and nothing is known of who wrote
// the paths yet. Chance gives two of the 65,535 paths of a package the same hash now and then, never so many.
constexpr int mostPathsOfOneHash = 64;
constexpr uint hashSeed = 1; // any; Qt's tables have one, and without one it hashes in another way

bool parseFiles(LedgerCursor fields, int count, PackageEntry *package)
{
    QHash<uint, int> pathsOfHash;
    package->files.reserve(fields.plausible(quint32(count), MinimumFileSize));
    for (int i = 0; i < count; ++i) {
        const unsigned char *digest = nullptr;
        Utf8String path;
        fields.read(&digest, DigestSize);
        if (!fields.read(&path))
            return false;
        const QByteArray key = QByteArray::fromRawData(path.data, path.length);
        const int known = package->files.size();
        package->files.insert(key, digest);
        if (count > mostPathsOfOneHash && package->files.size() > known
            && ++pathsOfHash[qHash(key, hashSeed)] > mostPathsOfOneHash)
            return false;
    }
    return true;
}

} // namespace

QString Utf8String::toString() const
{
    if (!data)
        return QString();
    return QString::fromUtf8(data, int(qstrnlen(data, length)));
}

PackageLedger::PackageLedger() = default;

PackageLedger::PackageLedger(const QByteArray &data, const QByteArray &etag)
{
    parse(data, etag);
}

PackageLedger::PackageLedger(const PackageLedger &held, const QByteArray &etag)
    : valid(held.valid)
    , etag(etag)
    , data(held.data)
    , segments(held.segments)
    , languages(held.languages)
    , types(held.types)
    , issuers(held.issuers)
    , keywords(held.keywords)
    , packages(held.packages)
    , links(held.links)
{
}

const PackageEntry *PackageLedger::findPackage(const QByteArray &id) const
{
    const auto found = std::find_if(packages.cbegin(), packages.cend(), [&id](const PackageEntry &package) {
        return package.id.length == id.size()
               && (id.isEmpty() || std::memcmp(package.id.data, id.constData(), size_t(id.size())) == 0);
    });
    return found == packages.cend() ? nullptr : &*found;
}

bool PackageLedger::parse(const QByteArray &document, const QByteArray &tag)
{
    clearTables();
    data = document;
    valid = !data.isEmpty() && parse();
    if (valid) {
        etag = tag;
        return true;
    }
    if (!data.isEmpty())
        qCCritical(lcLedger) << "Parsing of package ledger failed";
    etag.clear();
    data.clear();
    packages.clear();
    links.clear();
    keywords.clear();
    return false;
}

void PackageLedger::clearTables()
{
    segments.clear();
    languages.clear();
    types.clear();
    issuers.clear();
    keywords.clear();
    packages.clear();
    links.clear();
}

bool PackageLedger::parse()
{
    QElapsedTimer timer;
    timer.start();
    const auto guard = qScopeGuard([&timer] {
        qCDebug(lcLedger) << "Ledger parsing took" << double(timer.nsecsElapsed()) / 1e6 << "msecs";
    });
    return parseHeader() && parseIssuers() && parseKeywords() && parsePackages() && parseLinks()
           && verifySignatures();
}

bool PackageLedger::parseHeader()
{
    static_assert(sizeof(Header) == HeaderSize);
    if (data.size() < MinimumSize) {
        qCCritical(lcLedger) << "Invalid or corrupted ledger data:"
                             << "Size of" << data.size() << "is below minimum size";
        return false;
    }
    Header header;
    std::memcpy(&header, data.constData(), sizeof header);
    if (std::memcmp(header.magic, Magic, sizeof header.magic) != 0) {
        qCCritical(lcLedger) << "Ledger data missing magic bytes \"ldgr\"";
        return false;
    }
    if (header.major != MajorVersion || header.minor != MinorVersion) {
        qCCritical(lcLedger) << "Ledger version mismatch, must be 1.0";
        return false;
    }
    qCDebug(lcLedger) << "Basic header verification OK";
    return parseOffsetTable(header, data.constData(), unsigned(data.size()));
}

bool PackageLedger::parseOffsetTable(const Header &header, const char *document, unsigned int size)
{
    QSet<QByteArray> missing = sectionTags();
    QVector<Extent> extents;
    for (const Header::Entry &entry : header.offsets) {
        const QByteArray tag(entry.tag, TagSize);
        const auto offset = qFromLittleEndian<quint32>(entry.offset);
        quint32 payload = 0;
        if (!readSectionHead(tag, offset, document, size, &payload))
            return false;
        segments.insert(tag, QByteArray::fromRawData(document + offset, int(qMin(payload, size - offset))));
        missing.remove(tag);
        extents.append({offset, offset + payload + SectionHeadSize});
    }
    if (!missing.isEmpty()) {
        qCCritical(lcLedger) << "Incomplete ledger data, missing segments:" << missing;
        return false;
    }
    if (!areAdjacent(extents)) {
        qCCritical(lcLedger) << "Invalid ledger structure, misaligned segments";
        return false;
    }
    qCDebug(lcLedger) << "Offset table parsing OK";
    return true;
}

bool PackageLedger::parseIssuers()
{
    auto [cursor, end] = section(*this, IssuerTag);
    quint16 count = 0;
    const bool counted = LedgerCursor(&cursor, end).read(&count);
    qCDebug(lcLedger) << "Ledger contains" << count << "issuers";
    if (!counted)
        return false;
    for (int i = 0; i < count; ++i) {
        if (!parseIssuer(&cursor, end))
            return false;
    }
    return true;
}

bool PackageLedger::parseIssuer(const char **cursor, const char *end)
{
    LedgerCursor fields(cursor, end);
    IssuerEntry issuer;
    fields.read(&issuer.signature, SignatureSize);
    fields.read(&issuer.name);
    fields.read(&issuer.secondName);
    if (!fields.read(&issuer.publicKey))
        return false;
    issuers.append(issuer);
    return true;
}

bool PackageLedger::parseKeywords()
{
    auto [cursor, end] = section(*this, KeywordTag);
    LedgerCursor fields(&cursor, end);
    quint16 languageCount = 0;
    bool complete = fields.read(&languageCount);
    qCDebug(lcLedger) << "Ledger contains" << languageCount << "languages";
    for (int i = 0; i < languageCount; ++i) {
        Utf8String language;
        complete = fields.read(&language);
        languages.append(language);
    }
    quint32 count = 0;
    if (!complete || !fields.read(&count))
        return false;
    qCDebug(lcLedger) << "Ledger contains" << count << "keywords";
    int room = MostPartsOfKeywords;
    for (quint32 i = 0; i < count; ++i) {
        if (!parseKeyword(&cursor, end, &room))
            return false;
    }
    return true;
}

bool PackageLedger::parseKeyword(const char **cursor, const char *end, int *room)
{
    if (--*room < 0)
        return false;
    LedgerCursor fields(cursor, end);
    KeywordEntry keyword;
    quint8 type = 0;
    quint16 translationCount = 0;
    fields.read(&type);
    fields.read(&keyword.id);
    if (!fields.read(&translationCount))
        return false;
    keyword.type = type;
    for (int i = 0; i < translationCount; ++i) {
        if (!parseTranslation(fields, languages.size(), &keyword, room))
            return false;
    }
    keywords.append(keyword);
    return true;
}

bool PackageLedger::parsePackages()
{
    auto [cursor, end] = section(*this, PackageTag);
    LedgerCursor fields(&cursor, end);
    quint16 typeCount = 0;
    fields.read(&typeCount);
    qCDebug(lcLedger) << "Ledger contains" << typeCount << "types";
    for (int i = 0; i < typeCount; ++i) {
        Utf8String type;
        fields.read(&type);
        types.append(type);
    }
    quint32 count = 0;
    if (!fields.read(&count))
        return false;
    qCDebug(lcLedger) << "Ledger contains" << count << "packages";
    packages.reserve(fields.plausible(count, MinimumPackageSize));
    for (quint32 i = 0; i < count; ++i) {
        if (!parsePackage(&cursor, end)) {
            qCCritical(lcLedger) << "Package parsing failed";
            return false;
        }
    }
    return true;
}

bool PackageLedger::parsePackage(const char **cursor, const char *end)
{
    LedgerCursor fields(cursor, end);
    PackageEntry package;
    quint16 fileCount = 0;
    fields.read(&package.typeIndex);
    fields.read(&package.issuerIndex);
    fields.read(&package.signature, SignatureSize);
    fields.read(&package.id);
    fields.read(&package.manifest);
    if (!fields.read(&fileCount))
        return false;
    if (package.typeIndex >= types.size() || package.issuerIndex >= issuers.size())
        return false;
    if (!parseFiles(fields, fileCount, &package))
        return false;
    packages.append(std::move(package));
    return true;
}

bool PackageLedger::parseLinks()
{
    auto [cursor, end] = section(*this, LinkTag);
    LedgerCursor fields(&cursor, end);
    quint32 count = 0;
    if (!fields.read(&count))
        return false;
    qCDebug(lcLedger) << "Ledger contains" << count << "links";
    links.reserve(qMin(fields.plausible(count, LinkSize), maximumEntries<LinkEntry>));
    for (quint32 i = 0; i < count; ++i) {
        if (!parseLink(&cursor, end)) {
            qCCritical(lcLedger) << "Failed to parse link with index" << i;
            return false;
        }
    }
    return true;
}

bool PackageLedger::parseLink(const char **cursor, const char *end)
{
    if (end - *cursor < LinkSize || links.size() >= maximumEntries<LinkEntry>)
        return false;
    LedgerCursor fields(cursor, end);
    LinkEntry link;
    quint8 type = 0;
    fields.read(&type);
    fields.read(&link.flags);
    fields.read(&link.source);
    fields.read(&link.target);
    link.type = type;
    links.append(link);
    return true;
}

} // namespace ts::pm
