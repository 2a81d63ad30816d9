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
 * Whether what is meant for \a one may be sent to \a other: scheme, host and port are the same. The secure
 * port of the same host is another origin, as it is for a browser.
 */
inline bool isSameOrigin(const QUrl &one, const QUrl &other)
{
    const auto port = [](const QUrl &url) { return url.port(isSecure(url) ? 443 : 80); };
    return one.scheme() == other.scheme() && one.host() == other.host() && port(one) == port(other);
}

} // namespace ts
