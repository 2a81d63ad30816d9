import QtQuick 2.15
import QtQuick.Controls 2.15
import "../controls"
import "../theme"

// What is typed here filters the list at once; words of the catalogue that contain it are offered below.
TextField {
    id: field

    property Catalogue catalogue
    readonly property alias suggesting: popup.opened

    // The keyboard is to go on to the packages found.
    signal left()

    implicitHeight: Theme.controlHeight
    leftPadding: Theme.reversed ? Theme.controlHeight : Theme.iconSize + 20
    rightPadding: Theme.reversed ? Theme.iconSize + 20 : Theme.controlHeight
    font.pixelSize: Theme.body
    color: Theme.text
    selectionColor: Theme.accent
    selectedTextColor: Theme.accentInk
    placeholderText: qsTrId("browser-search-placeholder")
    placeholderTextColor: Theme.dim
    selectByMouse: true
    activeFocusOnTab: true
    Accessible.name: qsTrId("browser-search")
    Accessible.description: popup.markedWord
    Accessible.searchEdit: true

    background: Rectangle {
        radius: height / 2
        color: Theme.surface
        border.color: Theme.outline

        Icon {
            anchors.left: parent.left
            anchors.leftMargin: 12
            anchors.verticalCenter: parent.verticalCenter
            name: "search"
            color: Theme.dim
        }

        FocusRing {
            shown: field.activeFocus
            distance: 1
            radius: height / 2
        }
    }

    IconButton {
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        visible: field.text !== ""
        focusPolicy: Qt.NoFocus
        iconName: "close"
        iconColor: Theme.dim
        text: qsTrId("browser-search-clear")
        onClicked: field.searchFor("", false)
    }

    SuggestionPopup {
        id: popup

        y: field.height + 4
        width: field.width
        model: field.catalogue.suggestions
        wanted: field.activeFocus && field.text !== "" && !field.catalogue.listing.wholeWord
        onChosen: field.searchFor(word, true)
    }

    onTextEdited: {
        popup.dismissed = false;
        searchFor(text, false);
    }

    Keys.onUpPressed: popup.moveBy(-1)
    Keys.onDownPressed: {
        if (popup.opened)
            popup.moveBy(1);
        else
            left();
    }
    Keys.onReturnPressed: accept()
    Keys.onEnterPressed: accept()
    Keys.onEscapePressed: {
        if (popup.opened)
            popup.dismissed = true;
        else if (text !== "")
            searchFor("", false);
        else
            left();
    }

    function searchFor(words, whole) {
        text = words;
        catalogue.listing.wholeWord = whole;
        catalogue.listing.searchText = words;
        catalogue.suggestions.searchString = whole ? "" : words;
    }

    // Takes over from wherever a word has been begun.
    function begin(text) {
        forceActiveFocus(Qt.ShortcutFocusReason);
        popup.dismissed = false;
        searchFor(text, false);
        cursorPosition = length;
    }

    // Shows what the list is filtered by after that has been changed elsewhere.
    function follow() {
        if (text !== catalogue.listing.searchText)
            searchFor(catalogue.listing.searchText, catalogue.listing.wholeWord);
    }

    function accept() {
        if (popup.opened && popup.currentWord() !== "")
            searchFor(popup.currentWord(), true);
        popup.dismissed = true;
        left();
    }

    Connections {
        target: field.catalogue.listing

        function onSearchTextChanged() {
            field.follow();
        }
    }
}
