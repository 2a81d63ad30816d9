import QtQuick 2.15
import QtQuick.Controls 2.15
import Tamsel.Browser 1.0
import "../theme"

// Opens the choice between light, dark, and what the system says.
IconButton {
    id: button

    property bool byKeyboard: false
    readonly property var icons: ({ "light": "sun", "dark": "moon", "system": "contrast" })

    iconName: icons[Session.theme]
    text: qsTrId("browser-theme")
    checked: menu.visible
    onClicked: {
        byKeyboard = visualFocus;
        menu.open();
    }

    Menu {
        id: menu

        x: button.width - width
        y: button.height + 4
        padding: 4
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

        ThemeItem {
            theme: "system"
            iconName: button.icons[theme]
            text: qsTrId("browser-theme-system")
        }

        ThemeItem {
            theme: "light"
            iconName: button.icons[theme]
            text: qsTrId("browser-theme-light")
        }

        ThemeItem {
            theme: "dark"
            iconName: button.icons[theme]
            text: qsTrId("browser-theme-dark")
        }
    }
}
