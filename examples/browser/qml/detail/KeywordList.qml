import QtQuick 2.15
import "../controls"
import "../theme"

// The keywords of a package, each a way to the other packages that carry it.
Section {
    id: section

    property var keywords: []

    signal keywordChosen(var keyword)

    title: qsTrId("browser-keywords")
    count: keywords.length
    entries: repeater

    Flow {
        width: parent.width
        spacing: 6

        Repeater {
            id: repeater

            model: section.firstOf(section.keywords)

            Chip {
                text: modelData.name
                emphasised: modelData.category
                maximumWidth: section.width
                onClicked: section.keywordChosen(modelData)
            }
        }
    }
}
