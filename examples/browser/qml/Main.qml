import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Window 2.15
import Tamsel.Browser 1.0
import Tamsel.PackageManager 1.0
import "catalogue"
import "detail"
import "theme"

ApplicationWindow {
    id: window

    // What pictures of the views are taken by.
    readonly property PackageProvider provider: library.provider
    readonly property bool settled: library.started && !library.listing.busy && !pages.busy
    readonly property bool connecting: library.connectingServers.length > 0
    readonly property int packageCount: library.provider.packageCount
    readonly property int hits: library.listing.hits
    readonly property string message: cataloguePage.message
    readonly property bool warning: cataloguePage.warning
    readonly property bool suggesting: cataloguePage.suggesting
    readonly property bool filtersShown: cataloguePage.filtersShown
    readonly property bool languagesShown: cataloguePage.languagesShown
    readonly property size largePictureSize: Qt.size(Theme.largePicture * Screen.devicePixelRatio, 0)
    readonly property int openStatus: pages.depth > 1 && pages.currentItem.reference
                                      ? pages.currentItem.reference.status : PackageReference.Unknown

    width: Session.windowSize.width
    height: Session.windowSize.height
    minimumWidth: 320
    minimumHeight: 320
    visible: true
    title: pages.depth > 1 ? qsTrId("browser-window-title").arg(pages.currentItem.title)
                           : qsTrId("browser-title")
    color: Theme.page
    font.pixelSize: Theme.body
    LayoutMirroring.enabled: Theme.reversed
    LayoutMirroring.childrenInherit: true

    palette.window: Theme.page
    palette.windowText: Theme.text
    palette.base: Theme.surface
    palette.text: Theme.text
    palette.button: Theme.surface
    palette.buttonText: Theme.text
    palette.highlight: Theme.accent
    palette.highlightedText: Theme.accentInk

    Catalogue {
        id: library
    }

    StackView {
        id: pages

        anchors.fill: parent
        focus: true
        initialItem: cataloguePage
        pushEnter: Session.animated ? fadeIn : null
        pushExit: null
        popEnter: null
        popExit: Session.animated ? fadeOut : null
    }

    // The button at the side of a mouse.
    MouseArea {
        anchors.fill: parent
        acceptedButtons: Qt.BackButton
        onClicked: window.goBack()
    }

    Transition {
        id: fadeIn

        NumberAnimation {
            property: "opacity"
            from: 0
            to: 1
            duration: Theme.moveTime
        }
    }

    Transition {
        id: fadeOut

        NumberAnimation {
            property: "opacity"
            from: 1
            to: 0
            duration: Theme.moveTime
        }
    }

    CataloguePage {
        id: cataloguePage

        catalogue: library
        onPackageChosen: window.openPackage(id)
    }

    Component {
        id: detailPage

        DetailPage {
            catalogue: library
            onClosed: window.goBack()
            onPackageChosen: window.openPackage(id)
            onKeywordChosen: window.showKeyword(keyword)
        }
    }

    Shortcut {
        sequence: StandardKey.Find
        onActivated: {
            window.showCatalogue();
            cataloguePage.search();
        }
    }

    Shortcut {
        sequences: [StandardKey.Back]
        enabled: pages.depth > 1
        onActivated: window.goBack()
    }

    Shortcut {
        sequences: [StandardKey.Refresh]
        onActivated: library.lookForChanges()
    }

    Shortcut {
        sequence: StandardKey.Quit
        onActivated: window.close()
    }

    function openPackage(id) {
        pages.push(detailPage, { "packageId": id });
    }

    function goBack() {
        if (pages.depth > 1)
            pages.pop();
    }

    function showCatalogue() {
        pages.pop(null);
    }

    function showKeyword(keyword) {
        showCatalogue();
        library.listing.clearFilters();
        if (keyword.category)
            library.listing.categoryId = keyword.id;
        else
            searchFor(keyword.name, true);
    }

    function searchFor(text, wholeWord) {
        library.listing.wholeWord = wholeWord;
        library.listing.searchText = text;
    }

    function search() {
        cataloguePage.search();
    }

    function chooseType(type) {
        library.listing.packageType = type;
    }

    function chooseCategory(id) {
        library.listing.categoryId = id;
    }

    function chooseOrder(key) {
        library.listing.order = key;
    }

    function clearFilters() {
        library.listing.clearFilters();
    }

    function showFilters() {
        cataloguePage.showFilters();
    }

    function hideFilters() {
        cataloguePage.hideFilters();
    }

    function showLanguages() {
        cataloguePage.showLanguages();
    }

    function hideLanguages() {
        cataloguePage.hideLanguages();
    }
}
