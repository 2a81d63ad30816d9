#pragma once

#include <QString>
#include <QStringList>
#include <QUrl>

namespace ts::pm {

/**
 * The relative URL by which the FileProxyServer asks for a file of a package: "ID/NAME".
 *
 * Clients send a URL in its encoded form, and the server finds those who wait for an answer by comparing what
 * they sent with the decoded form. So an id or a name that a URL has to encode, or would take for something
 * else ("?", "#", "..", "http:"), comes in an escaped form instead, "=ID/=NAME", in which all but letters,
 * digits and "-._~" is written as "=" and two hexadecimal digits.
 */
QUrl proxyPath(const QString &packageId, const QString &fileName);

/** What the parts of a path in the escaped form stand for; empty if they are none. */
QStringList unescapedProxyPath(const QStringList &parts);

} // namespace ts::pm
