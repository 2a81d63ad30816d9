import QtQuick 2.15
import QtQuick.Controls 2.15
import "../theme"

// A push button; the main one of a view is highlighted.
Button {
    id: button

    property string iconName

    implicitHeight: Theme.controlHeight
    leftPadding: Theme.margin
    rightPadding: Theme.margin
    font.pixelSize: Theme.body
    Accessible.name: text

    contentItem: Row {
        spacing: Theme.gap

        Icon {
            anchors.verticalCenter: parent.verticalCenter
            visible: button.iconName !== ""
            name: button.iconName
            size: Theme.body * 1.2
            color: label.color
        }

        Text {
            id: label

            anchors.verticalCenter: parent.verticalCenter
            text: button.text
            font: button.font
            color: button.highlighted ? Theme.accentInk : Theme.accent
        }
    }

    background: Rectangle {
        radius: Theme.radius
        color: {
            if (button.highlighted)
                return button.hovered || button.down ? Theme.accentHover : Theme.accent;
            return button.down ? Theme.pressed : (button.hovered ? Theme.hover : Theme.surface);
        }
        border.width: button.highlighted ? 0 : 1
        border.color: Theme.outline

        FocusRing {
            shown: button.visualFocus
            distance: button.highlighted ? 4 : 2 // not to run into the colour
        }
    }

    Keys.onReturnPressed: clicked()
    Keys.onEnterPressed: clicked()
}
