import QtQuick 2.15
import QtQuick.Controls 2.15
import "../controls"
import "../theme"

// One line of a list at the side: a filter that can be chosen.
ItemDelegate {
    id: item

    property int depth: 0
    property int number: -1
    property bool chosen: false
    property bool current: false

    height: Math.round(Theme.body * 2)
    leftPadding: Theme.reversed ? 18 : 12 + depth * 16
    rightPadding: Theme.reversed ? 12 + depth * 16 : 18
    topPadding: 0
    bottomPadding: 0
    focusPolicy: Qt.NoFocus
    Accessible.role: Accessible.ListItem
    Accessible.name: text
    Accessible.selectable: true
    Accessible.selected: chosen
    Accessible.onPressAction: clicked()

    contentItem: Item {
        Text {
            id: label

            anchors.left: parent.left
            anchors.right: count.left
            anchors.rightMargin: Theme.gap
            anchors.verticalCenter: parent.verticalCenter
            text: item.text
            textFormat: Text.PlainText
            font.pixelSize: Theme.body
            font.bold: item.chosen
            color: item.chosen ? Theme.accentSoftInk : Theme.text
            elide: Text.ElideRight
        }

        Text {
            id: count

            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            text: item.number < 0 ? "" : Texts.number(item.number)
            font.pixelSize: Theme.small
            color: item.chosen ? Theme.accentSoftInk : Theme.dim
        }
    }

    WholeText {
        label: label
        wanted: item.hovered || item.current
    }

    background: Rectangle {
        radius: Theme.radius
        color: {
            if (item.chosen)
                return Theme.accentSoft;
            return item.down ? Theme.pressed : (item.hovered ? Theme.hover : "transparent");
        }

        FocusRing {
            shown: item.current
            distance: -1
        }
    }
}
