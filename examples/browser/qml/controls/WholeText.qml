import QtQuick 2.15

// Shows a text that has been cut off in full, as a tool tip of what it lies in.
Loader {
    id: whole

    property Text label
    property string text: label.text
    // Whether somebody is looking.
    property bool wanted: false

    anchors.fill: parent
    active: wanted && label.truncated
    sourceComponent: Tip {
        visible: true
        text: whole.text
    }
}
