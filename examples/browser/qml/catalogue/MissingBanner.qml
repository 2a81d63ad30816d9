import QtQuick 2.15
import "../controls"
import "../theme"

// Names directories that are missing while others have packages to show.
Rectangle {
    id: banner

    property Catalogue catalogue

    visible: catalogue.missingDirectories.length > 0 && !catalogue.empty && catalogue.started
    implicitHeight: visible ? words.implicitHeight + 2 * Theme.gap : 0
    color: Theme.warningSoft
    Accessible.role: Accessible.AlertMessage
    Accessible.name: words.text

    Icon {
        id: mark

        anchors.left: parent.left
        anchors.leftMargin: Theme.margin
        anchors.verticalCenter: parent.verticalCenter
        name: "warning"
        color: Theme.warning
    }

    Text {
        id: words

        anchors.left: mark.right
        anchors.leftMargin: Theme.gap
        anchors.right: parent.right
        anchors.rightMargin: Theme.margin
        anchors.verticalCenter: parent.verticalCenter
        text: qsTrId("browser-missing-title", banner.catalogue.missingDirectories.length) + ": "
              + banner.catalogue.missingDirectories.join(", ")
        textFormat: Text.PlainText
        font.pixelSize: Theme.body
        color: Theme.text
        wrapMode: Text.Wrap
    }
}
