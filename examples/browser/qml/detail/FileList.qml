import QtQuick 2.15
import "../theme"

// The files of a package. They can be opened once they are installed.
Section {
    id: section

    property var files: []

    title: qsTrId("browser-files")
    count: files.length
    entries: repeater

    Rectangle {
        width: parent.width
        height: rows.height + 2 * rows.y
        radius: Theme.radius
        color: Theme.surface
        border.color: Theme.line

        Column {
            id: rows

            x: 4
            y: 4
            width: parent.width - 2 * x

            Repeater {
                id: repeater

                model: section.firstOf(section.files)

                FileRow {
                    width: rows.width
                    name: modelData.name
                    size: modelData.size
                    url: modelData.url
                }
            }
        }
    }
}
