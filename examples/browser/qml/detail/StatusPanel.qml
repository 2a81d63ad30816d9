import QtQuick 2.15
import Tamsel.PackageManager 1.0
import "../controls"
import "../theme"

// The status of a package in words, with what can be done about it.
Rectangle {
    id: panel

    property int status
    readonly property bool installing: status === PackageReference.Installing
    readonly property bool problem: label.problem
    readonly property string hint: {
        switch (status) {
        case PackageReference.Incomplete:
            return qsTrId("browser-hint-incomplete");
        case PackageReference.Unavailable:
            return qsTrId("browser-hint-unavailable");
        default:
            return "";
        }
    }

    signal retryWanted()

    implicitHeight: content.height + 2 * content.y
    radius: Theme.radius
    color: problem ? Theme.warningSoft : Theme.accentSoft
    Accessible.role: Accessible.StaticText
    Accessible.name: Texts.statusName(status) + ". " + hint

    Column {
        id: content

        x: 12
        y: 10
        width: parent.width - 2 * x
        spacing: Theme.gap

        Item {
            width: parent.width
            height: Math.max(label.height, Theme.iconSize)

            StatusLabel {
                id: label

                anchors.left: parent.left
                anchors.verticalCenter: parent.verticalCenter
                status: panel.status
                pixelSize: Theme.body
            }

            BusyBar {
                anchors.left: label.right
                anchors.leftMargin: Theme.margin
                anchors.right: parent.right
                anchors.verticalCenter: parent.verticalCenter
                visible: panel.installing
                Accessible.name: Texts.statusName(panel.status)
            }
        }

        Text {
            width: parent.width
            visible: panel.problem
            text: panel.hint
            font.pixelSize: Theme.body
            lineHeight: 1.2
            color: Theme.text
            wrapMode: Text.Wrap
        }

        TextButton {
            anchors.left: parent.left
            visible: panel.problem
            iconName: "refresh"
            text: qsTrId("browser-look-again")
            onClicked: panel.retryWanted()
        }
    }
}
