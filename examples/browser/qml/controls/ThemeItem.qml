import QtQuick 2.15
import QtQuick.Controls 2.15
import Tamsel.Browser 1.0
import "../theme"

// One theme in the menu of themes.
MenuItem {
    id: item

    property string theme
    property string iconName
    readonly property bool chosen: Session.theme === theme

    implicitHeight: Theme.controlHeight
    onTriggered: Session.theme = theme
    Accessible.name: text
    Accessible.checkable: true
    Accessible.checked: chosen

    contentItem: Item {
        Icon {
            id: mark

            x: 4
            anchors.verticalCenter: parent.verticalCenter
            name: item.iconName
        }

        Text {
            anchors.left: mark.right
            anchors.leftMargin: 12
            anchors.right: tick.left
            anchors.verticalCenter: parent.verticalCenter
            text: item.text
            font.pixelSize: Theme.body
            color: Theme.text
            elide: Text.ElideRight
        }

        Icon {
            id: tick

            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            visible: item.chosen
            name: "check"
            color: Theme.accent
        }
    }

    background: Rectangle {
        radius: Theme.radius - 2
        color: item.highlighted ? Theme.hover : "transparent"
        border.width: item.visualFocus ? 2 : 0
        border.color: Theme.focus
    }
}
