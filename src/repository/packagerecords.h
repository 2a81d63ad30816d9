#pragma once

#include "presentation/keyword.h"
#include "repository/link.h"

#include <QString>
#include <QVector>

namespace ts::pm {

// The records in which a PackageAccessor tells what its source holds. Plain values that own their strings.
// A record that could not be read is in its default state, or has an id only. The index drops what has no id,
// keywords without a type, and links without both ends.

struct PackageInfo
{
    /** Unique among packages and keywords of all sources; the source of highest priority wins. */
    QString id;
    /** Hierarchical type, segments joined with ":". */
    QString type;
    /** Revision of the package, null where the source has none. Kept, not interpreted. */
    QString revision;
};

/** One form of a keyword in one language. */
struct LangString
{
    /** Language code such as "de" or "en"; empty for a literal. */
    QString language;
    /** The singular of a noun; for any other keyword the one string. */
    QString sg;
    /** The plural of a noun; empty for any other keyword. */
    QString pl;
};

struct KeywordInfo
{
    /** Shares one id space with packages. */
    QString id;
    Keyword::Type type = Keyword::Invalid;
    /** All strings in all languages; several in one language are synonyms. */
    QVector<LangString> strings;
};

struct LinkInfo
{
    LinkType type = InvalidLink;
    /** Id of the node where the link starts. */
    QString from;
    /** Id of the node where the link ends. */
    QString to;
};

} // namespace ts::pm

Q_DECLARE_TYPEINFO(ts::pm::PackageInfo, Q_MOVABLE_TYPE);
Q_DECLARE_TYPEINFO(ts::pm::LangString, Q_MOVABLE_TYPE);
Q_DECLARE_TYPEINFO(ts::pm::KeywordInfo, Q_MOVABLE_TYPE);
Q_DECLARE_TYPEINFO(ts::pm::LinkInfo, Q_MOVABLE_TYPE);
