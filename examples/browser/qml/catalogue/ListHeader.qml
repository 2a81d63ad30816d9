import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import "../controls"
import "../theme"

// How many packages there are, by what they are filtered, and in which order they come.
Item {
    id: header

    property Catalogue catalogue
    readonly property Listing listing: catalogue.listing
    readonly property bool narrow: width < 560

    // A filter has been taken away, and its button with it.
    signal gridWanted()

    implicitHeight: layout.implicitHeight + 2 * Theme.gap

    // In a narrow window the filters have a row of their own.
    GridLayout {
        id: layout

        anchors.fill: parent
        anchors.leftMargin: Theme.gap
        anchors.rightMargin: Theme.gap
        columnSpacing: Theme.gap
        rowSpacing: Theme.gap

        Text {
            Layout.fillWidth: header.narrow
            Layout.leftMargin: 4
            text: qsTrId("browser-hits", header.listing.hits)
            font.pixelSize: Theme.body
            font.bold: true
            color: Theme.text
            elide: Text.ElideRight
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }

        Flow {
            visible: !header.narrow || header.listing.packageType !== "" || header.listing.categoryId !== ""
            Layout.row: header.narrow ? 1 : 0
            Layout.column: header.narrow ? 0 : 1
            Layout.columnSpan: header.narrow ? 4 : 1
            Layout.fillWidth: true
            Layout.leftMargin: 4
            spacing: 6

            Chip {
                visible: header.listing.packageType !== ""
                text: Texts.typeName(header.listing.packageType)
                iconName: "close"
                emphasised: true
                maximumWidth: parent.width
                Accessible.name: qsTrId("browser-filter-remove").arg(text)
                onClicked: {
                    header.listing.packageType = "";
                    header.gridWanted();
                }
            }

            Chip {
                visible: header.listing.categoryId !== ""
                text: header.categoryName
                iconName: "close"
                emphasised: true
                maximumWidth: parent.width
                Accessible.name: qsTrId("browser-filter-remove").arg(text)
                onClicked: {
                    header.listing.categoryId = "";
                    header.gridWanted();
                }
            }
        }

        Text {
            visible: !header.narrow
            Layout.row: 0
            Layout.column: 2
            text: qsTrId("browser-order")
            font.pixelSize: Theme.small
            color: Theme.dim
            Accessible.ignored: true
        }

        ChoiceBox {
            id: orderBox

            Layout.row: 0
            Layout.column: 3
            Layout.preferredWidth: Theme.body * 12
            Accessible.name: qsTrId("browser-order") + ": " + displayText
            textOf: header.orderName
            model: ListModel {
                ListElement { key: "catalogue" }
                ListElement { key: "title" }
                ListElement { key: "newest" }
                ListElement { key: "oldest" }
                ListElement { key: "edition" }
            }
            currentIndex: Math.max(0, indexOfValue(header.listing.order))
            onActivated: header.listing.order = currentValue
        }
    }

    readonly property string categoryName: {
        catalogue.categoryRevision; // to be evaluated anew with it
        return listing.categoryId === "" ? "" : catalogue.categoryName(listing.categoryId);
    }

    function orderName(key) {
        switch (key) {
        case "title":
            return qsTrId("browser-order-title");
        case "newest":
            return qsTrId("browser-order-newest");
        case "oldest":
            return qsTrId("browser-order-oldest");
        case "edition":
            return qsTrId("browser-order-edition");
        default:
            return qsTrId("browser-order-catalogue");
        }
    }
}
