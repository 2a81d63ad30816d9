import QtQuick 2.15
import "../controls"
import "../theme"

// What a package is, and whether it is there.
Column {
    id: heading

    property string title
    property string description
    property string type
    property bool featured: false
    property alias status: statusPanel.status

    signal retryWanted()

    spacing: Theme.gap * 1.5

    // A publisher's type can be of any length.
    Flow {
        width: parent.width
        spacing: Theme.gap

        Text {
            visible: heading.type !== ""
            width: Math.min(implicitWidth, parent.width)
            text: Texts.typeName(heading.type)
            textFormat: Text.PlainText
            font.pixelSize: Theme.small
            font.bold: true
            font.capitalization: Font.AllUppercase
            font.letterSpacing: 0.6
            color: Theme.accent
            wrapMode: Text.Wrap
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }

        Row {
            visible: heading.featured
            spacing: 4

            Icon {
                anchors.verticalCenter: parent.verticalCenter
                name: "star"
                size: Theme.body
                color: Theme.warning
            }

            Text {
                anchors.verticalCenter: parent.verticalCenter
                text: qsTrId("browser-featured")
                font.pixelSize: Theme.small
                color: Theme.warning
                Accessible.role: Accessible.StaticText
                Accessible.name: text
            }
        }
    }

    Text {
        width: parent.width
        text: heading.title
        textFormat: Text.PlainText
        font.pixelSize: Theme.huge
        font.bold: true
        color: Theme.text
        wrapMode: Text.Wrap
        Accessible.role: Accessible.Heading
        Accessible.name: text
    }

    StatusPanel {
        id: statusPanel

        width: parent.width
        onRetryWanted: heading.retryWanted()
    }

    Text {
        width: parent.width
        visible: text !== ""
        text: heading.description
        textFormat: Text.PlainText
        font.pixelSize: Theme.body
        lineHeight: 1.35
        color: Theme.text
        wrapMode: Text.Wrap
        Accessible.role: Accessible.StaticText
        Accessible.name: text
    }
}
