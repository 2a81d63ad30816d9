import QtQuick 2.15
import Tamsel.Browser 1.0

// Opens the choice between light, dark, and what the system says.
MenuButton {
    readonly property var icons: ({ "light": "sun", "dark": "moon", "system": "contrast" })

    iconName: icons[Session.theme]
    text: qsTrId("browser-theme")

    MenuChoice {
        iconName: "contrast"
        text: qsTrId("browser-theme-system")
        chosen: Session.theme === "system"
        onTriggered: Session.theme = "system"
    }

    MenuChoice {
        iconName: "sun"
        text: qsTrId("browser-theme-light")
        chosen: Session.theme === "light"
        onTriggered: Session.theme = "light"
    }

    MenuChoice {
        iconName: "moon"
        text: qsTrId("browser-theme-dark")
        chosen: Session.theme === "dark"
        onTriggered: Session.theme = "dark"
    }
}
