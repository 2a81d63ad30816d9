#include "ledger/ledgerreader.h"

#include "server/ledgerformat_p.h"

#include <QMap>
#include <QtEndian>

namespace ts::ledger {

namespace format = pm::ledgerformat;

namespace {

/** Takes bytes from the front of a part of the document. Once they do not suffice, it gives nothing but
 * zeros. */
class Cursor
{
public:
    Cursor(const QByteArray &document, qint64 begin, qint64 end)
        : document(document)
        , position(begin)
        , end(end)
    {
    }

    bool failed() const { return !failure.isNull(); }
    QString error() const { return failure; }

    template<typename Number>
    Number number(const char *what)
    {
        const QByteArray bytes = block(sizeof(Number), what);
        return bytes.isEmpty() ? Number(0) : qFromLittleEndian<Number>(bytes.constData());
    }

    /** Takes a number, and calls \a read as often as that says, until something has failed. */
    template<typename Number, typename Read>
    void repeat(const char *what, const Read &read)
    {
        for (quint32 left = number<Number>(what); left > 0 && !failed(); --left)
            read();
    }

    QByteArray block(qint64 size, const char *what)
    {
        if (failed() || size > end - position) {
            fail(QStringLiteral("cut off in: %1").arg(QLatin1String(what)));
            return QByteArray();
        }
        position += size;
        return document.mid(int(position - size), int(size));
    }

    QByteArray text(const char *what) { return block(number<quint16>(what), what); }

    void checkIndex(quint32 index, int count, const char *what)
    {
        if (qint64(index) >= count)
            fail(QStringLiteral("%1 %2, but there are %3").arg(QLatin1String(what)).arg(index).arg(count));
    }

    void fail(const QString &message)
    {
        if (!failed())
            failure = QStringLiteral("At byte %1: %2").arg(position).arg(message);
    }

private:
    const QByteArray &document;
    qint64 position;
    const qint64 end;
    QString failure;
};

class Reading
{
public:
    explicit Reading(const QByteArray &document)
        : document(document)
    {
    }

    LedgerRecords records;
    QString error;

    bool run()
    {
        return readHeader() && readSection(format::IssuerTag, &Reading::readIssuers)
               && readSection(format::KeywordTag, &Reading::readKeywords)
               && readSection(format::PackageTag, &Reading::readPackages)
               && readSection(format::LinkTag, &Reading::readLinks);
    }

private:
    struct Section
    {
        qint64 begin; // of its tag
        qint64 end;
    };

    bool fail(const QString &message)
    {
        error = message;
        return false;
    }

    bool readHeader()
    {
        if (document.size() < format::MinimumSize)
            return fail(QStringLiteral("%1 bytes are no ledger").arg(document.size()));
        if (!document.startsWith(format::Magic))
            return fail(
                QStringLiteral("No ledger: it does not begin with '%1'").arg(QLatin1String(format::Magic)));
        if (document.at(4) != format::MajorVersion || document.at(5) != format::MinorVersion)
            return fail(QStringLiteral("Version %1.%2 of the format is not known")
                            .arg(int(document.at(4)))
                            .arg(int(document.at(5))));
        for (int entry = 6; entry < format::HeaderSize; entry += 8) {
            if (!readTableEntry(entry))
                return false;
        }
        return checkTable();
    }

    bool readTableEntry(int entry)
    {
        const QByteArray tag = document.mid(entry, format::TagSize);
        const qint64 begin = numberAt(entry + format::TagSize);
        const bool fits = begin >= format::HeaderSize && begin <= document.size() - format::SectionHeadSize;
        if (!fits || document.mid(int(begin), format::TagSize) != tag)
            return fail(QStringLiteral("No section '%1' at byte %2")
                            .arg(QString::fromLatin1(tag), QString::number(begin)));
        const qint64 end = begin + format::SectionHeadSize + numberAt(begin + format::TagSize);
        if (end > document.size())
            return fail(QStringLiteral("The section '%1' is cut off").arg(QString::fromLatin1(tag)));
        sections.insert(tag, {begin, end});
        return true;
    }

    bool checkTable()
    {
        QMap<qint64, qint64> places;
        for (const Section &section : qAsConst(sections))
            places.insert(section.begin, section.end);
        for (auto place = places.begin(); place != places.end() && place != std::prev(places.end());
             ++place) {
            if (place.value() != std::next(place).key())
                return fail(
                    QStringLiteral("A gap or an overlap between sections at byte %1").arg(place.value()));
        }
        return true;
    }

    qint64 numberAt(qint64 position) const
    {
        return qFromLittleEndian<quint32>(document.constData() + position);
    }

    bool readSection(const char *tag, void (Reading::*readPayload)(Cursor &))
    {
        const auto section = sections.constFind(QByteArray(tag));
        if (section == sections.constEnd())
            return fail(QStringLiteral("There is no section '%1'").arg(QLatin1String(tag)));
        Cursor cursor(document, section->begin + format::SectionHeadSize, section->end);
        (this->*readPayload)(cursor);
        return cursor.failed() ? fail(cursor.error()) : true;
    }

    void readIssuers(Cursor &cursor)
    {
        cursor.repeat<quint16>("number of issuers", [&] { records.issuers.append(issuer(cursor)); });
    }

    static IssuerRecord issuer(Cursor &cursor)
    {
        IssuerRecord issuer;
        issuer.signature = cursor.block(format::SignatureSize, "signature of an issuer");
        issuer.name = cursor.text("name of an issuer");
        issuer.secondName = cursor.text("second name of an issuer");
        issuer.publicKey = cursor.text("key of an issuer");
        return issuer;
    }

    void readKeywords(Cursor &cursor)
    {
        cursor.repeat<quint16>("number of languages",
                               [&] { records.languages.append(cursor.text("language")); });
        cursor.repeat<quint32>("number of keywords", [&] { records.keywords.append(keyword(cursor)); });
    }

    KeywordRecord keyword(Cursor &cursor)
    {
        countPartOfKeywords(cursor);
        KeywordRecord keyword;
        keyword.type = cursor.number<quint8>("type of a keyword");
        keyword.id = cursor.text("id of a keyword");
        cursor.repeat<quint16>("number of translations",
                               [&] { keyword.translations.append(translation(cursor)); });
        return keyword;
    }

    TranslationRecord translation(Cursor &cursor)
    {
        countPartOfKeywords(cursor);
        TranslationRecord translation;
        translation.language = cursor.number<quint16>("language of a translation");
        cursor.checkIndex(translation.language, records.languages.size(), "language");
        cursor.repeat<quint8>("number of strings", [&] {
            countPartOfKeywords(cursor);
            translation.values.append(cursor.text("string of a keyword"));
        });
        return translation;
    }

    // Clients refuse a ledger with more of them.
    void countPartOfKeywords(Cursor &cursor)
    {
        if (++partsOfKeywords > format::MostPartsOfKeywords)
            cursor.fail(QStringLiteral("more than %1 keywords, their languages and strings together")
                            .arg(format::MostPartsOfKeywords));
    }

    void readPackages(Cursor &cursor)
    {
        cursor.repeat<quint16>("number of package types",
                               [&] { records.types.append(cursor.text("package type")); });
        cursor.repeat<quint32>("number of packages", [&] { records.packages.append(package(cursor)); });
    }

    PackageRecord package(Cursor &cursor)
    {
        PackageRecord package;
        package.type = cursor.number<quint16>("type of a package");
        cursor.checkIndex(package.type, records.types.size(), "package type");
        package.issuer = cursor.number<quint16>("issuer of a package");
        cursor.checkIndex(package.issuer, records.issuers.size(), "issuer");
        package.signature = cursor.block(format::SignatureSize, "signature of a package");
        package.id = cursor.text("id of a package");
        package.manifest = cursor.text("manifest of a package");
        cursor.repeat<quint16>("number of files", [&] {
            const QByteArray digest = cursor.block(format::DigestSize, "digest of a file");
            package.files.append({digest, cursor.text("path of a file")});
        });
        return package;
    }

    void readLinks(Cursor &cursor)
    {
        cursor.repeat<quint32>("number of links", [&] { records.links.append(link(cursor)); });
    }

    static LinkRecord link(Cursor &cursor)
    {
        LinkRecord link;
        link.type = cursor.number<quint8>("type of a link");
        link.flags = cursor.number<quint8>("flags of a link");
        link.source = cursor.number<quint32>("start of a link");
        link.target = cursor.number<quint32>("end of a link");
        return link;
    }

    const QByteArray &document;
    QMap<QByteArray, Section> sections;
    int partsOfKeywords = 0;
};

} // namespace

std::optional<LedgerRecords> LedgerReader::read(const QByteArray &document, QString *error)
{
    Reading reading(document);
    if (reading.run())
        return reading.records;
    *error = reading.error;
    return std::nullopt;
}

} // namespace ts::ledger
