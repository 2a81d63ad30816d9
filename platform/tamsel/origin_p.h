#pragma once

#include <QUrl>

namespace ts {

/** True for the URL schemes that requests are sent to. */
inline bool isHttp(const QUrl &url)
{
    return url.isValid() && !url.host().isEmpty()
           && (url.scheme() == QLatin1String("http") || url.scheme() == QLatin1String("https"));
}

inline bool isSecure(const QUrl &url)
{
    return url.scheme() == QLatin1String("https");
}

/**
 * Scheme, host and port, also one that goes without saying. The secure port of the same host is another
 * origin, as it is for a browser.
 */
inline QString originOf(const QUrl &url)
{
    const int port = url.port(isSecure(url) ? 443 : 80);
    return QStringLiteral("%1://%2:%3").arg(url.scheme(), url.host(), QString::number(port));
}

/** Whether what is meant for \a one may be sent to \a other. */
inline bool isSameOrigin(const QUrl &one, const QUrl &other)
{
    return originOf(one) == originOf(other);
}

} // namespace ts
