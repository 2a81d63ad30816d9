import QtQuick 2.15
import QtQuick.Controls 2.15
import "../theme"

// A small button for a word: a keyword to follow, or a filter to take away.
AbstractButton {
    id: chip

    property string iconName
    property bool emphasised: false
    property real maximumWidth: 320

    implicitHeight: Math.round(Theme.body * 2)
    width: Math.min(implicitWidth, maximumWidth)
    leftPadding: 12
    rightPadding: 12
    font.pixelSize: Theme.small
    Accessible.name: text
    Accessible.role: Accessible.Button

    contentItem: Row {
        spacing: 6

        Text {
            id: label

            anchors.verticalCenter: parent.verticalCenter
            width: Math.min(implicitWidth, chip.maximumWidth - chip.leftPadding - chip.rightPadding
                                           - (mark.visible ? mark.width + parent.spacing : 0))
            text: chip.text
            textFormat: Text.PlainText
            font: chip.font
            elide: Text.ElideRight
            color: chip.emphasised ? Theme.accentSoftInk : Theme.text
        }

        Icon {
            id: mark

            anchors.verticalCenter: parent.verticalCenter
            visible: chip.iconName !== ""
            name: chip.iconName
            size: Theme.small
            color: label.color
        }
    }

    WholeText {
        label: label
        wanted: chip.hovered || chip.visualFocus
    }

    background: Rectangle {
        radius: height / 2
        color: {
            if (chip.down)
                return Theme.pressed;
            if (chip.emphasised)
                return Theme.accentSoft;
            return chip.hovered ? Theme.hover : Theme.surface;
        }
        border.color: chip.hovered || !chip.emphasised ? Theme.outline : Theme.accentSoft

        FocusRing {
            shown: chip.visualFocus
            radius: height / 2
        }
    }

    Keys.onReturnPressed: clicked()
    Keys.onEnterPressed: clicked()
}
