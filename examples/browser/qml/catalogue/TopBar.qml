import QtQuick 2.15
import QtQuick.Layouts 1.15
import "../controls"
import "../theme"

// Search and what concerns the whole window.
Rectangle {
    id: bar

    property Catalogue catalogue
    property bool narrow: false
    readonly property alias searchField: searchField
    readonly property alias filterButton: filterButton
    readonly property alias languageButton: languageButton

    signal filtersWanted()
    signal gridWanted()

    implicitHeight: Theme.controlHeight + 2 * Theme.gap + 4
    color: Theme.surface

    RowLayout {
        anchors.fill: parent
        anchors.leftMargin: Theme.margin
        anchors.rightMargin: Theme.margin
        spacing: Theme.gap

        IconButton {
            id: filterButton

            visible: bar.narrow
            iconName: "filter"
            text: qsTrId("browser-filters")
            onClicked: bar.filtersWanted()
        }

        Icon {
            visible: !bar.narrow
            name: "leaf"
            size: Theme.body * 1.9
            color: Theme.accent
        }

        Text {
            visible: !bar.narrow
            Layout.rightMargin: Theme.margin
            text: qsTrId("browser-title")
            font.pixelSize: Theme.large
            font.bold: true
            color: Theme.text
        }

        SearchField {
            id: searchField

            Layout.fillWidth: true
            Layout.maximumWidth: 560
            catalogue: bar.catalogue
            onLeft: bar.gridWanted()
        }

        Item {
            Layout.fillWidth: true
            Layout.maximumWidth: bar.narrow ? 0 : bar.width
        }

        IconButton {
            iconName: "refresh"
            text: qsTrId("browser-look-for-changes")
            onClicked: bar.catalogue.lookForChanges()
        }

        LanguageButton {
            id: languageButton

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
