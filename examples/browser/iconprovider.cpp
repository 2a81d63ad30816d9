#include "iconprovider.h"

#include <QFile>
#include <QPainter>
#include <QSvgRenderer>

namespace browser {

namespace {

constexpr int naturalSize = 24; // side of the drawings, in pixels

QByteArray drawing(const QString &name, const QString &colour)
{
    QFile file(QStringLiteral(":/icons/%1.svg").arg(name));
    if (!file.open(QIODevice::ReadOnly))
        return QByteArray();
    return file.readAll().replace("currentColor", colour.toLatin1());
}

} // namespace

IconProvider::IconProvider()
    : QQuickImageProvider(QQuickImageProvider::Image)
{
}

QImage IconProvider::requestImage(const QString &id, QSize *size, const QSize &requestedSize)
{
    const int side = requestedSize.isEmpty() ? naturalSize : requestedSize.width();
    *size = QSize(naturalSize, naturalSize);
    QSvgRenderer renderer(drawing(id.section(QLatin1Char('/'), 0, 0), id.section(QLatin1Char('/'), 1)));
    if (!renderer.isValid())
        return QImage();
    QImage image(side, side, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    renderer.render(&painter);
    return image;
}

} // namespace browser
