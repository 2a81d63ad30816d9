import QtQuick 2.15
import "../catalogue"
import "../theme"

// The packages that come along with one, each a way to its own page.
Section {
    id: section

    property Catalogue catalogue
    property var ids: []

    signal packageChosen(string id)

    title: qsTrId("browser-required")
    count: ids.length
    entries: repeater

    Repeater {
        id: repeater

        model: section.firstOf(section.ids)

        RequiredPackage {
            width: section.width
            // They are being installed by the package that requires them; this only looks on.
            reference: section.catalogue.opened.open(modelData)
            onClicked: section.packageChosen(modelData)
        }
    }
}
