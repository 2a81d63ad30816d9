import QtQuick 2.15
import "../theme"

// A part of a page under a heading.
Column {
    id: section

    property string title

    spacing: Theme.gap

    Text {
        text: section.title
        font.pixelSize: Theme.large
        font.bold: true
        color: Theme.text
        Accessible.role: Accessible.Heading
        Accessible.name: text
    }
}
