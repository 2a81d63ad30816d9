#include "database/couchdburl_p.h"

#include <QStringList>

#include <algorithm>

namespace ts::pm {

namespace {

// Has a meaning of its own as a segment of a path, also if its characters are escaped.
bool isSpecial(const QString &segment)
{
    return segment.isEmpty() || segment == QLatin1String(".") || segment == QLatin1String("..");
}

// Leaves alone what means itself in a path, so that plain ids and names give the URLs that anybody would
// write for them. CouchDB reads a "+" as a blank, in a path too.
QString encoded(const QString &text, const QByteArray &plain = {})
{
    return QString::fromLatin1(QUrl::toPercentEncoding(text, ":@!$&'()*,;=[]" + plain));
}

// Servers take "/" in the name of an attachment as it is, unless that makes a segment with a meaning.
QString encodedName(const QString &name)
{
    const QStringList segments = name.split(QLatin1Char('/'));
    const bool isPlain = std::none_of(segments.begin(), segments.end(), isSpecial);
    return encoded(name, isPlain ? "/" : "");
}

} // namespace

QUrl documentUrl(const QUrl &database, const QString &id)
{
    if (isSpecial(id))
        return QUrl();
    return QUrl(database.toString() + QLatin1Char('/') + encoded(id) + QLatin1Char('/'));
}

QUrl attachmentUrl(const QUrl &document, const QString &name)
{
    if (document.isEmpty() || isSpecial(name))
        return QUrl();
    return QUrl(document.toString() + encodedName(name));
}

} // namespace ts::pm
