import QtQuick 2.15
import "../controls"
import "../theme"

// A part of a page under a heading. Its entries are not made only when they come into sight, and a catalogue may
// give thousands of them, so they are shown some at a time.
Column {
    id: section

    property string title
    property int count: 0
    property int limit: step
    readonly property int step: 100
    default property alias content: body.data

    spacing: Theme.gap

    Text {
        text: section.title
        font.pixelSize: Theme.large
        font.bold: true
        color: Theme.text
        Accessible.role: Accessible.Heading
        Accessible.name: text
    }

    Column {
        id: body

        width: parent.width
        spacing: Theme.gap
    }

    TextButton {
        visible: section.count > section.limit
        text: qsTrId("browser-more", Math.min(section.step, section.count - section.limit))
        onClicked: section.limit += section.step
    }

    function firstOf(entries) {
        return entries.slice(0, limit);
    }
}
