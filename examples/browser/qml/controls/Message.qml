import QtQuick 2.15
import "../theme"

// Says in the middle of an empty view why it is empty, and what can be done.
FocusScope {
    id: message

    property string iconName
    property string title
    property string text
    property string detail
    property alias buttonText: button.text
    property alias buttonIcon: button.iconName

    signal clicked()

    Accessible.role: Accessible.StaticText
    Accessible.name: title + ". " + text + " " + detail

    // In a small window, or with many places to name, there is more than fits.
    ScrollArea {
        anchors.fill: parent
        contentHeight: Math.max(height, column.height + 2 * Theme.margin)

        Column {
            id: column

            anchors.centerIn: parent
            width: Math.min(parent.width - 2 * Theme.margin, Theme.body * 36)
            spacing: Theme.margin

            Rectangle {
                anchors.horizontalCenter: parent.horizontalCenter
                visible: message.height > Theme.body * 28
                width: Theme.body * 6
                height: width
                radius: width / 2
                color: Theme.accentSoft

                Icon {
                    anchors.centerIn: parent
                    name: message.iconName
                    size: parent.width * 0.5
                    color: Theme.accentSoftInk
                }
            }

            Text {
                width: parent.width
                text: message.title
                textFormat: Text.PlainText
                font.pixelSize: Theme.large
                font.bold: true
                color: Theme.text
                horizontalAlignment: Text.AlignHCenter
                wrapMode: Text.Wrap
            }

            Text {
                width: parent.width
                text: message.text
                textFormat: Text.PlainText
                font.pixelSize: Theme.body
                color: Theme.dim
                horizontalAlignment: Text.AlignHCenter
                wrapMode: Text.Wrap
                lineHeight: 1.2
            }

            Text {
                visible: text !== ""
                width: parent.width
                text: message.detail
                textFormat: Text.PlainText
                font.pixelSize: Theme.body
                font.bold: true
                color: Theme.text
                horizontalAlignment: Text.AlignHCenter
                wrapMode: Text.WrapAnywhere
            }

            TextButton {
                id: button

                anchors.horizontalCenter: parent.horizontalCenter
                visible: text !== ""
                focus: true
                highlighted: true
                onClicked: message.clicked()
            }
        }
    }
}
