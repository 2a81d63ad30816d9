import QtQuick 2.15
import "../theme"

// The facts that the manifest states, as a table.
Section {
    id: section

    property var facts: []

    title: qsTrId("browser-facts")
    count: facts.length

    Rectangle {
        width: parent.width
        height: rows.height + 2 * rows.y
        radius: Theme.radius
        color: Theme.surface
        border.color: Theme.line

        Column {
            id: rows

            x: Theme.margin
            y: 4
            width: parent.width - 2 * x

            Repeater {
                model: section.firstOf(section.facts)

                FactRow {
                    width: rows.width
                    name: Texts.factName(modelData.key)
                    value: Texts.factValue(modelData.key, modelData.value)
                    separated: index > 0
                }
            }
        }
    }
}
