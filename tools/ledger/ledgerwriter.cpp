#include "ledger/ledgerwriter.h"

#include "server/ledgerformat_p.h"

#include <QtEndian>

namespace ts::ledger {

namespace format = pm::ledgerformat;

namespace {

constexpr int sectionCount = 4;

constexpr quint64 largestText = 0xFFFF; // bytes
constexpr quint64 largestCount16 = 0xFFFF;
constexpr quint64 largestCount8 = 0xFF;

/** Tells how long something gets without writing it. */
class Counter
{
public:
    template<typename Number>
    void number(Number)
    {
        total += sizeof(Number);
    }
    void block(const QByteArray &bytes) { total += quint64(bytes.size()); }
    quint64 size() const { return total; }

private:
    quint64 total = 0;
};

class Appender
{
public:
    explicit Appender(QByteArray &document)
        : document(document)
    {
    }

    template<typename Number>
    void number(Number value)
    {
        const Number littleEndian = qToLittleEndian(value);
        document.append(reinterpret_cast<const char *>(&littleEndian), int(sizeof(Number)));
    }
    void block(const QByteArray &bytes) { document.append(bytes); }

private:
    QByteArray &document;
};

template<typename Sink>
void write(Sink &sink, const QByteArray &text)
{
    sink.number(quint16(text.size()));
    sink.block(text);
}

template<typename Sink>
void write(Sink &sink, const IssuerRecord &issuer)
{
    sink.block(issuer.signature);
    write(sink, issuer.name);
    write(sink, issuer.secondName);
    write(sink, issuer.publicKey);
}

template<typename Sink>
void write(Sink &sink, const TranslationRecord &translation)
{
    sink.number(translation.language);
    sink.number(quint8(translation.values.size()));
    for (const QByteArray &value : translation.values)
        write(sink, value);
}

template<typename Sink>
void write(Sink &sink, const KeywordRecord &keyword)
{
    sink.number(keyword.type);
    write(sink, keyword.id);
    sink.number(quint16(keyword.translations.size()));
    for (const TranslationRecord &translation : keyword.translations)
        write(sink, translation);
}

template<typename Sink>
void write(Sink &sink, const FileRecord &file)
{
    sink.block(file.digest);
    write(sink, file.path);
}

template<typename Sink>
void write(Sink &sink, const PackageRecord &package)
{
    sink.number(package.type);
    sink.number(package.issuer);
    sink.block(package.signature);
    write(sink, package.id);
    write(sink, package.manifest);
    sink.number(quint16(package.files.size()));
    for (const FileRecord &file : package.files)
        write(sink, file);
}

template<typename Sink>
void write(Sink &sink, const LinkRecord &link)
{
    sink.number(link.type);
    sink.number(link.flags);
    sink.number(link.source);
    sink.number(link.target);
}

template<typename Count, typename Sink, typename Record>
void writeAll(Sink &sink, const QVector<Record> &records)
{
    sink.number(Count(records.size()));
    for (const Record &record : records)
        write(sink, record);
}

constexpr const char *sectionTags[sectionCount] = {format::IssuerTag, format::KeywordTag, format::PackageTag,
                                                   format::LinkTag};

template<typename Sink>
void writeSection(Sink &sink, int section, const LedgerRecords &records)
{
    switch (section) {
    case 0:
        return writeAll<quint16>(sink, records.issuers);
    case 1:
        writeAll<quint16>(sink, records.languages);
        return writeAll<quint32>(sink, records.keywords);
    case 2:
        writeAll<quint16>(sink, records.types);
        return writeAll<quint32>(sink, records.packages);
    default:
        return writeAll<quint32>(sink, records.links);
    }
}

quint64 payloadSize(int section, const LedgerRecords &records)
{
    Counter counter;
    writeSection(counter, section, records);
    return counter.size();
}

quint64 documentSize(const LedgerRecords &records)
{
    quint64 size = format::HeaderSize;
    for (int section = 0; section < sectionCount; ++section)
        size += format::SectionHeadSize + payloadSize(section, records);
    return size;
}

void writeHeader(QByteArray &document, const LedgerRecords &records)
{
    document.append(format::Magic);
    document.append(char(format::MajorVersion)).append(char(format::MinorVersion));
    Appender appender(document);
    quint64 offset = format::HeaderSize;
    for (int section = 0; section < sectionCount; ++section) {
        document.append(sectionTags[section]);
        appender.number(quint32(offset));
        offset += format::SectionHeadSize + payloadSize(section, records);
    }
}

/** Looks for what the format cannot carry. */
class LimitCheck
{
public:
    QStringList findErrors(const LedgerRecords &records)
    {
        check(records.issuers);
        check(records.languages, QStringLiteral("language"));
        for (const KeywordRecord &keyword : records.keywords)
            check(keyword);
        place = QStringLiteral("The ledger");
        atMost(partsOfKeywords, format::MostPartsOfKeywords,
               QStringLiteral("keywords, their languages and strings together"));
        check(records.types, QStringLiteral("package type"));
        for (const PackageRecord &package : records.packages)
            check(package);
        place = QStringLiteral("The ledger");
        atMost(documentSize(records), format::LargestDocument, QStringLiteral("bytes in all"));
        return errors;
    }

private:
    void check(const QVector<IssuerRecord> &issuers)
    {
        place = QStringLiteral("The ledger");
        atMost(quint64(issuers.size()), largestCount16, QStringLiteral("issuers"));
        for (const IssuerRecord &issuer : issuers) {
            place = QStringLiteral("Issuer '%1'").arg(QString::fromUtf8(issuer.name.left(80)));
            exactly(issuer.signature, format::SignatureSize, QStringLiteral("signature"));
            text(issuer.name, QStringLiteral("name"));
            text(issuer.secondName, QStringLiteral("second name"));
            text(issuer.publicKey, QStringLiteral("public key"));
        }
    }

    void check(const QVector<QByteArray> &names, const QString &what)
    {
        place = QStringLiteral("The ledger");
        atMost(quint64(names.size()), largestCount16, what + QLatin1Char('s'));
        for (const QByteArray &name : names) {
            place = QStringLiteral("'%1...'").arg(QString::fromUtf8(name.left(80)));
            text(name, what);
        }
    }

    void check(const KeywordRecord &keyword)
    {
        place = placeOf(keyword.origin, keyword.id);
        text(keyword.id, QStringLiteral("id"));
        partsOfKeywords += 1 + quint64(keyword.translations.size());
        atMost(quint64(keyword.translations.size()), largestCount16, QStringLiteral("languages"));
        for (const TranslationRecord &translation : keyword.translations) {
            partsOfKeywords += quint64(translation.values.size());
            atMost(quint64(translation.values.size()), largestCount8,
                   QStringLiteral("strings in a language"));
            for (const QByteArray &value : translation.values)
                text(value, QStringLiteral("string"));
        }
    }

    void check(const PackageRecord &package)
    {
        place = placeOf(package.origin, package.id);
        exactly(package.signature, format::SignatureSize, QStringLiteral("signature"));
        text(package.id, QStringLiteral("id"));
        text(package.manifest, QStringLiteral("manifest"));
        atMost(quint64(package.files.size()), largestCount16, QStringLiteral("files"));
        for (const FileRecord &file : package.files) {
            exactly(file.digest, format::DigestSize, QStringLiteral("digest"));
            text(file.path, QStringLiteral("path of a file"));
        }
    }

    static QString placeOf(const QString &origin, const QByteArray &id)
    {
        return origin.isEmpty() ? QStringLiteral("'%1'").arg(QString::fromUtf8(id.left(80))) : origin;
    }

    void text(const QByteArray &text, const QString &what)
    {
        if (quint64(text.size()) > largestText)
            errors.append(QStringLiteral("%1: %2 of %3 bytes; at most %4 are possible")
                              .arg(place, what, QString::number(text.size()), QString::number(largestText)));
    }

    void atMost(quint64 count, quint64 largest, const QString &what)
    {
        if (count > largest)
            errors.append(QStringLiteral("%1: %2 %3; at most %4 are possible")
                              .arg(place, QString::number(count), what, QString::number(largest)));
    }

    void exactly(const QByteArray &block, int size, const QString &what)
    {
        if (block.size() != size)
            errors.append(QStringLiteral("%1: %2 of %3 bytes; it has to have %4")
                              .arg(place, what, QString::number(block.size()), QString::number(size)));
    }

    QString place;
    QStringList errors;
    quint64 partsOfKeywords = 0;
};

} // namespace

LedgerWriter::LedgerWriter(const LedgerRecords &records)
    : records(records)
    , problems(LimitCheck().findErrors(records))
{
}

QByteArray LedgerWriter::toByteArray() const
{
    if (!problems.isEmpty())
        return QByteArray();
    QByteArray document;
    document.reserve(int(documentSize(records)));
    writeHeader(document, records);
    for (int section = 0; section < sectionCount; ++section) {
        Appender appender(document);
        document.append(sectionTags[section]);
        appender.number(quint32(payloadSize(section, records)));
        writeSection(appender, section, records);
    }
    return document;
}

} // namespace ts::ledger
