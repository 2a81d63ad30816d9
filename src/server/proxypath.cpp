#include "server/proxypath_p.h"

#include <QByteArray>

namespace ts::pm {

namespace {

constexpr char escape = '=';
constexpr QLatin1Char marker(escape);

// Whether a client that is given the URL of text sends text itself, and is understood.
bool isPlain(const QString &text, const QUrl &url)
{
    const QUrl absolute = QUrl(QStringLiteral("http://localhost/key/")).resolved(url);
    return url.path(QUrl::FullyDecoded) == text && url.toString() == text
           && absolute.path(QUrl::FullyEncoded) == QLatin1String("/key/") + text;
}

QString escaped(const QString &text)
{
    return marker + QString::fromLatin1(text.toUtf8().toPercentEncoding({}, {}, escape));
}

} // namespace

QUrl proxyPath(const QString &packageId, const QString &fileName)
{
    const QString text = QStringLiteral("%1/%2").arg(packageId, fileName);
    const QUrl url(text, QUrl::TolerantMode);
    if (isPlain(text, url))
        return url;
    return QUrl(QStringLiteral("%1/%2").arg(escaped(packageId), escaped(fileName)));
}

QStringList unescapedProxyPath(const QStringList &parts)
{
    QStringList texts;
    if (parts.size() != 2)
        return texts;
    for (const QString &part : parts) {
        if (!part.startsWith(marker))
            return {};
        texts.append(QString::fromUtf8(QByteArray::fromPercentEncoding(part.mid(1).toLatin1(), escape)));
    }
    return texts;
}

} // namespace ts::pm
