import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import "../controls"
import "../theme"

// The view of all packages: search, filters, and the grid.
FocusScope {
    id: page

    property Catalogue catalogue
    readonly property bool narrow: width < Theme.narrowWidth
    readonly property alias message: message.kind
    readonly property alias warning: banner.visible
    readonly property alias suggesting: topBar.suggesting
    readonly property bool filtersShown: filterDrawer.position === 1
    readonly property alias languagesShown: topBar.languagesShown

    signal packageChosen(string id)

    StackView.onActivated: focusContent()

    Rectangle {
        anchors.fill: parent
        color: Theme.page
    }

    ColumnLayout {
        anchors.fill: parent
        spacing: 0

        TopBar {
            id: topBar

            readonly property bool suggesting: searchField.suggesting
            readonly property bool languagesShown: languageButton.opened

            Layout.fillWidth: true
            z: 1
            catalogue: page.catalogue
            narrow: page.narrow
            onFiltersWanted: filterDrawer.open()
            onGridWanted: page.focusContent()
        }

        SourceBanner {
            id: banner

            Layout.fillWidth: true
            catalogue: page.catalogue
        }

        RowLayout {
            Layout.fillWidth: true
            Layout.fillHeight: true
            spacing: 0

            Loader {
                Layout.fillHeight: true
                Layout.preferredWidth: Theme.body * 18
                active: !page.narrow && !page.catalogue.empty && page.catalogue.started
                visible: active
                sourceComponent: Sidebar {
                    catalogue: page.catalogue
                }
            }

            ColumnLayout {
                spacing: 0

                ListHeader {
                    Layout.fillWidth: true
                    visible: !page.catalogue.empty && page.catalogue.started
                    catalogue: page.catalogue
                    onGridWanted: page.focusContent()
                }

                Item {
                    Layout.fillWidth: true
                    Layout.fillHeight: true

                    PackageGrid {
                        id: grid

                        anchors.fill: parent
                        visible: message.kind === ""
                        focus: true
                        catalogue: page.catalogue
                        onPackageChosen: page.packageChosen(id)
                        onTyped: topBar.searchField.begin(text)
                    }

                    CatalogueMessage {
                        id: message

                        anchors.fill: parent
                        catalogue: page.catalogue
                        onKindChanged: Qt.callLater(page.keepFocusInSight)
                    }

                    BusyIndicator {
                        anchors.centerIn: parent
                        running: page.catalogue.listing.busy
                        visible: running
                        palette.dark: Theme.accent
                        Accessible.name: qsTrId("browser-loading")
                    }
                }
            }
        }
    }

    Drawer {
        id: filterDrawer

        property bool byKeyboard: false

        edge: Theme.reversed ? Qt.RightEdge : Qt.LeftEdge
        width: Math.min(page.width * 0.8, Theme.body * 22)
        height: page.height
        enter: Transition {
            NumberAnimation {
                duration: Theme.moveTime
            }
        }
        exit: Transition {
            NumberAnimation {
                duration: Theme.moveTime
            }
        }
        interactive: page.narrow
        onAboutToShow: byKeyboard = topBar.filterButton.visualFocus
        onClosed: {
            if (byKeyboard)
                topBar.filterButton.focusReason = Qt.TabFocusReason;
        }
        background: Rectangle {
            color: Theme.page
        }

        Sidebar {
            anchors.fill: parent
            focus: true
            catalogue: page.catalogue
        }
    }

    onNarrowChanged: {
        if (!narrow)
            filterDrawer.close();
    }

    // The keyboard goes to the packages; without any, to where that can be changed.
    function focusContent() {
        var target = message.kind === "" ? grid : (catalogue.empty ? message : topBar.searchField);
        target.forceActiveFocus(Qt.TabFocusReason);
    }

    function keepFocusInSight() {
        if (grid.activeFocus || message.activeFocus)
            focusContent();
    }

    function search() {
        topBar.searchField.forceActiveFocus(Qt.ShortcutFocusReason);
        topBar.searchField.selectAll();
    }

    function showFilters() {
        filterDrawer.open();
    }

    function hideFilters() {
        filterDrawer.close();
    }

    function showLanguages() {
        topBar.languageButton.open();
    }

    function hideLanguages() {
        topBar.languageButton.close();
    }
}
