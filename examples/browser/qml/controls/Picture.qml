import QtQuick 2.15
import QtQuick.Window 2.15
import "../theme"

// A picture with round corners, and a drawing in its place while there is none.
Item {
    id: picture

    property url source
    property int radius: Theme.radius
    // The colour of what lies around the picture; the corners are painted over with it.
    property color ground: Theme.surface
    // Largest width that is worth reading, so that resizing a window does not read the file again and again.
    property int readWidth: 320
    readonly property bool loading: image.status === Image.Loading

    Rectangle {
        anchors.fill: parent
        color: Theme.sunken
    }

    Icon {
        anchors.centerIn: parent
        visible: image.status !== Image.Ready
        name: "package"
        size: Math.min(parent.width, parent.height) * 0.3
        color: Theme.outline
    }

    Image {
        id: image

        anchors.fill: parent
        asynchronous: true
        source: picture.source
        sourceSize: Qt.size(picture.readWidth * Screen.devicePixelRatio, 0)
        fillMode: Image.PreserveAspectCrop
        Accessible.ignored: true
    }

    Rectangle {
        anchors.fill: parent
        anchors.margins: -picture.radius
        color: "transparent"
        radius: picture.radius * 2
        border.width: picture.radius
        border.color: picture.ground
    }
}
