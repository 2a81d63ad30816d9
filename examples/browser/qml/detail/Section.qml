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
    // What makes the entries, if the keyboard can go to them.
    property Repeater entries
    default property alias content: body.data

    spacing: Theme.gap

    Text {
        width: parent.width
        text: section.title
        font.pixelSize: Theme.large
        font.bold: true
        color: Theme.text
        wrapMode: Text.Wrap
        Accessible.role: Accessible.Heading
        Accessible.name: text
    }

    Column {
        id: body

        width: parent.width
        spacing: Theme.gap
    }

    TextButton {
        id: more

        anchors.left: parent.left
        visible: section.count > section.limit
        text: qsTrId("browser-more", Math.min(section.step, section.count - section.limit))
        onClicked: {
            var first = section.limit;
            section.limit += section.step;
            section.passFocus(visualFocus, first);
        }
    }

    // The button moves away below the new entries, or goes.
    function passFocus(byKeyboard, row) {
        var entry = entries ? entries.itemAt(row) : null;
        if (entry && entry.enabled)
            entries.parent.forceLayout(); // or it would be looked for where it was made
        else if (more.visible)
            return;
        else
            entry = more.nextItemInFocusChain();
        entry.forceActiveFocus(byKeyboard ? Qt.TabFocusReason : Qt.MouseFocusReason);
    }

    function firstOf(entries) {
        return entries.slice(0, limit);
    }
}
