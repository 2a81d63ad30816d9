import QtQuick 2.15
import QtQuick.Window 2.15
import "../theme"

// One of the drawings in icons/, in any colour. Decoration only; what it stands beside carries the name.
Item {
    id: icon

    property string name
    property color color: Theme.text
    property real size: Theme.iconSize

    implicitWidth: size
    implicitHeight: size
    Accessible.ignored: true

    Image {
        anchors.fill: parent
        source: icon.name === "" ? "" : "image://icons/" + icon.name + "/" + icon.color
        sourceSize: Qt.size(icon.size * Screen.devicePixelRatio, icon.size * Screen.devicePixelRatio)
        fillMode: Image.PreserveAspectFit
        mirror: Theme.reversed && (icon.name === "back" || icon.name === "forward")
    }
}
