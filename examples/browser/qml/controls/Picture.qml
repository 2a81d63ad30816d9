import QtQuick 2.15
import QtQuick.Window 2.15
import Tamsel.Browser 1.0
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
        visible: !image.shown
        name: "package"
        size: Math.min(parent.width, parent.height) * 0.3
        color: Theme.outline
    }

    // Fills the place, and is cut off where it is taller or wider. A fill mode that does so would have the file
    // enlarged while it is read: one of a few pixels' width and a great height would take gigabytes.
    Item {
        anchors.fill: parent
        clip: true

        Image {
            id: image

            // Nothing is left of one that is very wide and a few pixels high.
            readonly property bool shown: status === Image.Ready && implicitWidth >= 1 && implicitHeight >= 1
            readonly property real zoom: Math.max(parent.width / Math.max(1, implicitWidth),
                                                  parent.height / Math.max(1, implicitHeight))

            anchors.centerIn: parent
            width: implicitWidth * zoom
            height: implicitHeight * zoom
            asynchronous: true
            // A file may be another one under the same name the next time. Pictures of the views rely on what
            // has been read beforehand.
            cache: !Session.animated || !/^file:/.test(picture.source)
            source: picture.source
            sourceSize: Qt.size(picture.readWidth * Screen.devicePixelRatio, 0)
            Accessible.ignored: true
        }
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
