import QtQuick 2.15
import "../theme"

// Shows where the keyboard is. Lies around its parent, unless anchored otherwise.
Rectangle {
    id: ring

    property bool shown: false
    property int distance: 2

    anchors.fill: parent
    anchors.margins: -distance
    visible: shown
    color: "transparent"
    radius: Theme.radius + distance
    border.width: 2
    border.color: Theme.focus
}
