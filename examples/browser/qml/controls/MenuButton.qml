import QtQuick 2.15
import QtQuick.Controls 2.15
import "../theme"

// A button that is only a drawing and opens a menu of choices.
IconButton {
    id: button

    default property alias choices: menu.contentData
    readonly property alias opened: menu.opened
    property bool byKeyboard: false

    engaged: menu.visible
    onClicked: {
        byKeyboard = visualFocus;
        menu.open();
    }

    Menu {
        id: menu

        x: Theme.reversed ? 0 : button.width - width
        y: button.height + 4
        padding: 4
        // The keys move on from what is chosen now.
        onOpened: {
            for (var row = 0; button.byKeyboard && row < count; ++row) {
                if (itemAt(row).chosen)
                    itemAt(row).forceActiveFocus(Qt.TabFocusReason);
            }
        }
        onClosed: {
            if (button.byKeyboard)
                button.focusReason = Qt.TabFocusReason;
        }

        background: Rectangle {
            implicitWidth: Theme.body * 14
            radius: Theme.radius
            color: Theme.raised
            border.color: Theme.outline
        }
    }

    function open() {
        menu.open();
    }

    function close() {
        menu.close();
    }

    function insertChoice(row, choice) {
        menu.insertItem(row, choice);
    }

    function removeChoice(choice) {
        menu.removeItem(choice);
    }
}
