import QtQuick 2.15
import Tamsel.Browser 1.0
import Tamsel.PackageManager 1.0
import "../controls"
import "../theme"

// One package in the grid: picture, title, type and status.
Item {
    id: card

    property string packageId
    property string title
    property string type
    property url picture
    property bool featured: false
    property int status
    property bool current: false
    property int distance: Theme.gap

    readonly property string shownTitle: title === "" ? packageId : title
    // Of a package that has not been opened since the start nobody knows whether it is installed.
    readonly property bool statusKnown: status !== PackageReference.Unknown

    signal opened()

    Accessible.role: Accessible.ListItem
    Accessible.name: shownTitle
    Accessible.description: [Texts.typeName(type), featured ? qsTrId("browser-featured") : "",
                             statusKnown ? Texts.statusName(status) : ""].filter(String).join(", ")
    Accessible.focusable: true
    Accessible.onPressAction: opened()

    Rectangle {
        id: frame

        readonly property int inset: Theme.gap

        anchors.fill: parent
        anchors.margins: card.distance
        radius: Theme.radius * 1.5
        color: area.pressed ? Theme.pressed : (area.containsMouse ? Theme.hover : Theme.surface)
        border.color: area.containsMouse ? Theme.outline : Theme.line

        Picture {
            id: image

            x: frame.inset
            y: frame.inset
            width: parent.width - 2 * frame.inset
            height: Math.round(width * 0.625)
            radius: Theme.radius - 2
            source: card.picture
            ground: frame.color
        }

        Rectangle {
            anchors.top: image.top
            anchors.right: image.right
            anchors.margins: 6
            visible: card.featured
            width: Theme.body * 1.7
            height: width
            radius: width / 2
            color: Theme.shade

            Icon {
                anchors.centerIn: parent
                name: "star"
                size: parent.width * 0.7
                color: Theme.star
            }
        }

        Text {
            id: titleText

            anchors.top: image.bottom
            anchors.topMargin: Theme.gap
            anchors.left: image.left
            anchors.right: image.right
            anchors.leftMargin: 4
            anchors.rightMargin: 4
            text: card.shownTitle
            textFormat: Text.PlainText
            font.pixelSize: Theme.body
            font.bold: true
            color: Theme.text
            wrapMode: Text.Wrap
            maximumLineCount: 2
            elide: Text.ElideRight
        }

        Text {
            anchors.left: titleText.left
            anchors.right: statusLabel.visible ? statusLabel.left : titleText.right
            anchors.rightMargin: statusLabel.visible ? Theme.gap : 0
            anchors.verticalCenter: statusLabel.verticalCenter
            text: Texts.typeName(card.type)
            textFormat: Text.PlainText
            font.pixelSize: Theme.small
            color: Theme.dim
            elide: Text.ElideRight
        }

        StatusLabel {
            id: statusLabel

            anchors.right: titleText.right
            anchors.bottom: parent.bottom
            anchors.bottomMargin: Theme.gap + 4
            visible: card.statusKnown
            status: card.status
        }

        WholeText {
            label: titleText
            wanted: area.containsMouse
        }

        FocusRing {
            shown: card.current
            distance: 3
            radius: frame.radius + distance
        }
    }

    MouseArea {
        id: area

        anchors.fill: frame
        hoverEnabled: Session.animated // a pointer has no part in pictures of the views
        cursorShape: Qt.PointingHandCursor
        onClicked: card.opened()
    }
}
