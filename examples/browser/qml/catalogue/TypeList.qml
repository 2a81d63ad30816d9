import QtQuick 2.15
import "../theme"

// The types of packages.
SideList {
    id: list

    property Catalogue catalogue

    title: qsTrId("browser-types")
    allText: qsTrId("browser-types-all")
    allNumber: catalogue.provider.packageCount
    allChosen: catalogue.listing.packageType === ""
    model: catalogue.types.types
    onModelChanged: showChoice()
    onChosenAt: catalogue.listing.packageType = row < 0 ? "" : model[row].type

    delegate: SideItem {
        width: list.width - 14
        text: Texts.typeName(modelData.type)
        depth: modelData.depth
        number: modelData.count
        chosen: modelData.type === list.catalogue.listing.packageType
        current: ListView.isCurrentItem && list.activeFocus
        onClicked: list.choose(index)
    }

    // The lists of types and of their texts are replaced as a whole.
    function showChoice() {
        var chosen = catalogue.listing.packageType;
        moveTo(model.findIndex(function(entry) { return entry.type === chosen; }));
    }

    Connections {
        target: list.catalogue.listing

        function onPackageTypeChanged() {
            list.showChoice();
        }
    }
}
