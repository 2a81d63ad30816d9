import QtQuick 2.15
import "../catalogue"
import "../controls"
import "../theme"

// The way back, and the title once it has been scrolled out of sight.
Rectangle {
    id: bar

    property Catalogue catalogue
    property string title
    property bool titleShown: false

    signal closed()

    implicitHeight: Theme.controlHeight + 2 * Theme.gap + 4
    color: Theme.surface

    TextButton {
        id: backButton

        anchors.left: parent.left
        anchors.leftMargin: Theme.margin
        anchors.verticalCenter: parent.verticalCenter
        iconName: "back"
        text: qsTrId("browser-back")
        onClicked: bar.closed()
    }

    Text {
        anchors.left: backButton.right
        anchors.leftMargin: Theme.margin
        anchors.right: buttons.left
        anchors.rightMargin: Theme.margin
        anchors.verticalCenter: parent.verticalCenter
        visible: bar.titleShown
        text: bar.title
        textFormat: Text.PlainText
        font.pixelSize: Theme.large
        font.bold: true
        color: Theme.text
        elide: Text.ElideRight
        Accessible.ignored: true
    }

    Row {
        id: buttons

        anchors.right: parent.right
        anchors.rightMargin: Theme.margin
        anchors.verticalCenter: parent.verticalCenter
        spacing: Theme.gap

        LanguageButton {
            languages: bar.catalogue.translations.languages
        }

        ThemeButton {}
    }

    Rectangle {
        anchors.bottom: parent.bottom
        width: parent.width
        height: 1
        color: Theme.line
    }
}
