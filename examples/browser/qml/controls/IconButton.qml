import QtQuick 2.15
import QtQuick.Controls 2.15
import "../theme"

// A button that is only a drawing. Its text is the accessible name and the tool tip.
ToolButton {
    id: button

    property string iconName
    property color iconColor: Theme.text
    // Whether what it opens is open.
    property bool engaged: false

    implicitWidth: Theme.controlHeight
    implicitHeight: Theme.controlHeight
    padding: 0
    Accessible.name: text

    contentItem: Item {
        Icon {
            anchors.centerIn: parent
            name: button.iconName
            color: button.iconColor
        }
    }

    background: Rectangle {
        radius: Theme.radius
        color: button.down ? Theme.pressed : (button.hovered || button.engaged ? Theme.hover : "transparent")

        FocusRing {
            shown: button.visualFocus
            distance: 0
        }
    }

    Tip {
        visible: (button.hovered || button.visualFocus) && !button.down && !button.engaged
        text: button.text
    }

    Keys.onReturnPressed: clicked()
    Keys.onEnterPressed: clicked()
}
