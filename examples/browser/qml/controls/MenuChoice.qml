import QtQuick 2.15
import QtQuick.Controls 2.15
import "../theme"

// One of several things to choose from in the menu of a button.
MenuItem {
    id: item

    property string iconName
    property bool chosen: false

    implicitHeight: Theme.controlHeight
    Accessible.name: text
    Accessible.checkable: true
    Accessible.checked: chosen
    Accessible.onPressAction: clicked()

    contentItem: Item {
        Icon {
            id: mark

            anchors.left: parent.left
            anchors.leftMargin: 4
            anchors.verticalCenter: parent.verticalCenter
            visible: name !== ""
            name: item.iconName
        }

        Text {
            anchors.left: mark.visible ? mark.right : parent.left
            anchors.leftMargin: mark.visible ? 12 : 4
            anchors.right: tick.left
            anchors.verticalCenter: parent.verticalCenter
            text: item.text
            textFormat: Text.PlainText
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
