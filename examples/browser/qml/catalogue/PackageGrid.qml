import QtQuick 2.15
import QtQuick.Controls 2.15
import Tamsel.PackageManager 1.0
import Tamsel.Browser 1.0
import "../controls"
import "../theme"

// The packages of the listing as cards.
GridView {
    id: grid

    // A filter may take thousands of scattered packages away at once.
    PromptLayout.enabled: true

    property Catalogue catalogue
    // The package that the view returns to after its rows have been replaced.
    property string anchor
    property real anchorOffset: 0
    property bool startOver: false

    signal packageChosen(string id)
    // The keyboard has begun a word, which the view itself has no use for.
    signal typed(string text)

    readonly property int columns: Math.max(1, Math.floor(width / (Theme.body * 16)))

    model: null
    cellWidth: Math.floor(width / columns)
    // A picture, two lines of title, one of type and status, and the space around them.
    cellHeight: Math.round((cellWidth - 4 * Theme.gap) * 0.625 + 6.5 * Theme.gap + 2.5 * Theme.body
                           + 1.3 * Theme.small)
    // Pictures show no more than what is in sight.
    cacheBuffer: Session.animated ? Math.max(0, height) : 0
    clip: true
    activeFocusOnTab: true
    boundsBehavior: Flickable.StopAtBounds
    keyNavigationEnabled: true
    highlightMoveDuration: Theme.moveTime
    currentIndex: 0

    Accessible.role: Accessible.List
    Accessible.name: qsTrId("browser-packages")

    delegate: PackageCard {
        width: grid.cellWidth
        height: grid.cellHeight
        packageId: model.id
        title: model.title
        picture: model.picture
        featured: model.featured
        type: grid.catalogue.opened.typeOf(model.id)
        status: {
            grid.catalogue.opened.revision; // to be evaluated anew with it
            return grid.catalogue.opened.statusOf(model.id);
        }
        current: GridView.isCurrentItem && grid.activeFocus
        onOpened: grid.open(index)
    }

    ScrollBar.vertical: Bar {}

    Keys.onReturnPressed: open(currentIndex)
    Keys.onEnterPressed: open(currentIndex)
    Keys.onSpacePressed: open(currentIndex)
    Keys.onPressed: {
        if (turnTo(event.key)) {
            event.accepted = true;
        } else if (begins(event)) {
            typed(event.text);
            event.accepted = true;
        }
    }

    function open(index) {
        var id = catalogue.listing.model.packageAt(index);
        if (id === "")
            return;
        currentIndex = index;
        packageChosen(id);
    }

    // Where keys that the view itself does not know lead to. Returns false for any other key.
    function turnTo(key) {
        var page = columns * Math.max(1, Math.floor(height / cellHeight));
        var targets = {};
        targets[Qt.Key_Home] = 0;
        targets[Qt.Key_End] = count - 1;
        targets[Qt.Key_PageUp] = Math.max(currentIndex - page, 0);
        targets[Qt.Key_PageDown] = Math.min(currentIndex + page, count - 1);
        if (targets[key] === undefined)
            return false;
        currentIndex = targets[key];
        return true;
    }

    // Whether a key is a character, not a command.
    function begins(event) {
        var commands = Qt.ControlModifier | Qt.AltModifier | Qt.MetaModifier;
        return !(event.modifiers & commands) && /^[^\x00-\x20\x7f]/.test(event.text);
    }

    function rememberPlace() {
        var listing = catalogue.listing;
        anchor = listing.keepPlace ? listing.model.packageAt(currentIndex) : "";
        anchorOffset = contentY;
    }

    function returnToStart() {
        startOver = false;
        currentIndex = 0;
        positionViewAtBeginning();
    }

    function returnToPlace() {
        var row = anchor === "" ? -1 : catalogue.listing.model.indexOf(anchor);
        anchor = "";
        if (row < 0) {
            returnToStart();
            return;
        }
        currentIndex = row;
        contentY = Math.max(0, Math.min(anchorOffset, contentHeight - height));
    }

    // While the rows are being replaced the view lets go of the model: it would look for rows that are gone.
    function followListing() {
        if (catalogue.listing.busy) {
            rememberPlace();
            model = null;
        } else {
            model = catalogue.listing.model;
            Qt.callLater(returnToPlace);
        }
    }

    Component.onCompleted: followListing()
    // From right to left, resizing would leave the cards where they were, out of sight.
    onContentXChanged: contentX = 0

    Connections {
        target: grid.catalogue.listing

        function onBusyChanged() {
            grid.followListing();
        }

        function onStartedOver() {
            grid.startOver = true;
        }
    }

    Connections {
        target: grid.catalogue.listing.model

        // A new index, which comes without the listing being busy.
        function onModelAboutToBeReset() {
            if (grid.model)
                grid.rememberPlace();
        }

        function onModelReset() {
            if (grid.model)
                Qt.callLater(grid.returnToPlace);
        }

        // Comes after all rows of a change.
        function onCountChanged() {
            if (grid.startOver)
                Qt.callLater(grid.returnToStart);
        }
    }
}
