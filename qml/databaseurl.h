#pragma once

#include <QUrl>

namespace ts::pm {

/** \a url as the sources of the library take it, which put a "/" behind it themselves. */
inline QUrl withoutTrailingSlash(QUrl url)
{
    QString path = url.path(QUrl::FullyEncoded);
    while (path.endsWith(QLatin1Char('/')))
        path.chop(1);
    url.setPath(path, QUrl::TolerantMode); // it is encoded already
    return url;
}

} // namespace ts::pm
