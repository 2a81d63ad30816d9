import QtQuick 2.15
import "../theme"

// One fact.
Item {
    id: row

    property string name
    property string value
    property bool separated: true

    height: Math.max(nameText.height, valueText.height) + 2 * Theme.gap + 2
    Accessible.role: Accessible.StaticText
    Accessible.name: name + ": " + value

    Rectangle {
        width: parent.width
        height: 1
        visible: row.separated
        color: Theme.line
    }

    Text {
        id: nameText

        anchors.left: parent.left
        y: Theme.gap + 1
        width: Math.round(parent.width * 0.4)
        text: row.name
        textFormat: Text.PlainText
        font.pixelSize: Theme.body
        color: Theme.dim
        wrapMode: Text.Wrap
    }

    Text {
        id: valueText

        anchors.left: nameText.right
        anchors.leftMargin: Theme.gap
        anchors.right: parent.right
        y: Theme.gap + 1
        text: row.value
        textFormat: Text.PlainText
        font.pixelSize: Theme.body
        color: Theme.text
        wrapMode: Text.Wrap
    }
}
