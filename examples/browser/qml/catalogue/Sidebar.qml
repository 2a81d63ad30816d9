import QtQuick 2.15
import QtQuick.Layouts 1.15
import "../theme"

// The filters: types above, categories below.
FocusScope {
    id: sidebar

    property Catalogue catalogue

    Rectangle {
        anchors.fill: parent
        color: Theme.page
    }

    ColumnLayout {
        anchors.fill: parent
        anchors.margins: Theme.gap
        spacing: Theme.gap

        TypeList {
            id: types

            Layout.fillWidth: true
            Layout.preferredHeight: contentHeight
            Layout.maximumHeight: sidebar.height * 0.6
            focus: true
            catalogue: sidebar.catalogue
        }

        CategoryList {
            Layout.fillWidth: true
            Layout.fillHeight: true
            catalogue: sidebar.catalogue
        }
    }
}
