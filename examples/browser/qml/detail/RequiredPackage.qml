import QtQuick 2.15
import QtQuick.Controls 2.15
import Tamsel.PackageManager 1.0
import "../controls"
import "../theme"

// One package that another one requires.
ItemDelegate {
    id: item

    property PackageReference reference
    readonly property int status: reference ? reference.status : PackageReference.Unavailable

    implicitHeight: Theme.body * 4
    padding: Theme.gap
    focusPolicy: Qt.StrongFocus
    text: fields.manifest.title || (reference ? reference.id : "")
    Accessible.name: text
    Accessible.description: Texts.statusName(status)
    Accessible.onPressAction: clicked()

    PackageData {
        id: fields

        packageReference: item.reference

        ManifestStringField {
            name: "title"
        }
        ManifestFileField {
            name: "picture"
        }
    }

    contentItem: Item {
        Picture {
            id: picture

            anchors.left: parent.left
            height: parent.height
            width: Math.round(height * 1.6)
            radius: Theme.radius - 3
            ground: item.background.color
            source: fields.manifest.picture
            readWidth: 100
        }

        Text {
            anchors.left: picture.right
            anchors.leftMargin: 12
            anchors.right: forward.left
            anchors.bottom: parent.verticalCenter
            text: item.text
            textFormat: Text.PlainText
            font.pixelSize: Theme.body
            font.bold: true
            color: Theme.text
            elide: Text.ElideRight
        }

        StatusLabel {
            anchors.left: picture.right
            anchors.leftMargin: 12
            anchors.top: parent.verticalCenter
            anchors.topMargin: 2
            status: item.status
        }

        Icon {
            id: forward

            anchors.right: parent.right
            anchors.rightMargin: 4
            anchors.verticalCenter: parent.verticalCenter
            name: "forward"
            color: Theme.dim
        }
    }

    background: Rectangle {
        radius: Theme.radius
        color: item.down ? Theme.pressed : (item.hovered ? Theme.hover : Theme.surface)
        border.color: item.hovered ? Theme.outline : Theme.line

        FocusRing {
            shown: item.visualFocus
        }
    }

    Keys.onReturnPressed: clicked()
    Keys.onEnterPressed: clicked()
}
