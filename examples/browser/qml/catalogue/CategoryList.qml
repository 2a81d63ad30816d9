import QtQuick 2.15

// The categories that lead to packages of the chosen type.
SideList {
    id: list

    property Catalogue catalogue

    title: qsTrId("browser-categories")
    allText: qsTrId("browser-categories-all")
    allChosen: catalogue.listing.categoryId === ""
    model: catalogue.categories
    onChosenAt: catalogue.listing.categoryId = row < 0 ? "" : model.data(model.index(row, 0), 0)

    delegate: SideItem {
        width: list.width - 14
        text: model.name || model.id
        chosen: model.id === list.catalogue.listing.categoryId
        current: ListView.isCurrentItem && list.activeFocus
        onClicked: list.choose(index)
    }

    Connections {
        target: list.catalogue.categories

        function onModelReset() {
            list.moveTo(list.catalogue.categoryRow(list.catalogue.listing.categoryId));
        }
    }

    Connections {
        target: list.catalogue.listing

        function onCategoryIdChanged() {
            list.moveTo(list.catalogue.categoryRow(list.catalogue.listing.categoryId));
        }
    }
}
