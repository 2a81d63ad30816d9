import QtQuick 2.15
import "../controls"
import "../theme"

// The picture of a package, in its own proportions as far as these fit a page.
Item {
    id: holder

    property alias source: picture.source
    property size naturalSize
    property real maximumHeight
    readonly property real proportion: {
        if (naturalSize.width <= 0 || naturalSize.height <= 0)
            return 0.625;
        return Math.max(0.4, Math.min(naturalSize.height / naturalSize.width, 1.1));
    }

    implicitHeight: Math.round(Math.min(width * proportion, maximumHeight))

    Picture {
        id: picture

        anchors.fill: parent
        radius: Theme.radius * 1.5
        ground: Theme.page
        readWidth: Theme.largePicture
    }
}
