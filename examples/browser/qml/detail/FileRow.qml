import QtQuick 2.15
import QtQuick.Controls 2.15
import "../controls"
import "../theme"

// One file; opens in the application that the system has for it.
ItemDelegate {
    id: row

    property string name
    property real size: -1
    property url url
    // The system has no application for it.
    property bool refused: false

    implicitHeight: Math.round(Theme.body * 2.4)
    enabled: size >= 0
    focusPolicy: Qt.StrongFocus
    leftPadding: 12
    rightPadding: 12
    topPadding: 0
    bottomPadding: 0
    Accessible.name: qsTrId("browser-file-open").arg(name)
    Accessible.description: sizeText.text
    Accessible.onPressAction: {
        if (enabled)
            clicked();
    }
    onClicked: refused = !Qt.openUrlExternally(url)

    contentItem: Item {
        Icon {
            id: mark

            anchors.left: parent.left
            anchors.verticalCenter: parent.verticalCenter
            name: "file"
            size: Theme.body * 1.2
            color: Theme.dim
        }

        Text {
            anchors.left: mark.right
            anchors.leftMargin: Theme.gap
            anchors.right: sizeText.left
            anchors.rightMargin: Theme.gap
            anchors.verticalCenter: parent.verticalCenter
            text: row.name
            textFormat: Text.PlainText
            font.pixelSize: Theme.body
            color: row.enabled ? Theme.text : Theme.dim
            elide: Text.ElideMiddle
        }

        Text {
            id: sizeText

            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            text: {
                if (!row.enabled)
                    return "";
                return row.refused ? qsTrId("browser-file-refused") : Texts.fileSize(row.size);
            }
            font.pixelSize: Theme.small
            color: row.refused ? Theme.warning : Theme.dim
        }
    }

    background: Rectangle {
        radius: Theme.radius - 2
        color: row.down ? Theme.pressed : (row.hovered ? Theme.hover : "transparent")

        FocusRing {
            shown: row.visualFocus
            distance: -1
        }
    }

    Keys.onReturnPressed: clicked()
    Keys.onEnterPressed: clicked()
}
