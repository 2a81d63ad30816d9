#pragma once

#include <QQuickImageProvider>

namespace browser {

/**
 * The icons of the browser, drawn in the colour asked for: "image://icons/NAME/COLOUR".
 *
 * Ownership: the engine that it is added to owns it.
 * Threads: any, as QQuickImageProvider says; it keeps no state.
 * Errors: an unknown icon gives an empty picture.
 */
class IconProvider : public QQuickImageProvider
{
public:
    IconProvider();

    QImage requestImage(const QString &id, QSize *size, const QSize &requestedSize) override;
};

} // namespace browser
