import QtQuick 2.15
import QtQuick.Controls 2.15
import "../theme"

// A scroll bar that is easy to grab and keeps out of the way.
ScrollBar {
    id: bar

    padding: 2
    minimumSize: 0.06
    policy: size < 1 ? ScrollBar.AlwaysOn : ScrollBar.AlwaysOff

    contentItem: Rectangle {
        implicitWidth: 6
        implicitHeight: 6
        radius: 3
        color: bar.pressed ? Theme.accent : (bar.hovered ? Theme.dim : Theme.outline)
    }

    background: Item {}
}
