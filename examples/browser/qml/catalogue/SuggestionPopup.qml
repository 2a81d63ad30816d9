import QtQuick 2.15
import QtQuick.Controls 2.15
import "../controls"
import "../theme"

// The words that fit what is being typed. The keyboard stays in the field, which moves the choice.
Popup {
    id: popup

    property var model
    // Whether there is anything to offer words for.
    property bool wanted: false
    // The user has sent it away; typing brings it back.
    property bool dismissed: false
    readonly property bool due: wanted && !dismissed && words.count > 0

    // The word that the keys have moved to.
    readonly property string markedWord: words.currentItem ? words.currentItem.text : ""

    signal chosen(string word)

    padding: 4
    focus: false
    closePolicy: Popup.CloseOnPressOutsideParent
    implicitHeight: Math.min(words.contentHeight, 8 * Theme.controlHeight) + topPadding + bottomPadding

    onDueChanged: {
        if (due)
            open();
        else
            close();
    }
    onWantedChanged: {
        if (!wanted)
            dismissed = false;
    }
    // Not by what it is due for: a click beside the field.
    onAboutToHide: {
        if (due)
            dismissed = true;
    }
    enter: Transition {}
    exit: Transition {}

    background: Rectangle {
        radius: Theme.radius
        color: Theme.raised
        border.color: Theme.outline
    }

    contentItem: ListView {
        id: words

        clip: true
        model: popup.model
        currentIndex: -1
        boundsBehavior: Flickable.StopAtBounds
        keyNavigationEnabled: false
        highlightMoveDuration: 0
        Accessible.role: Accessible.List
        Accessible.name: qsTrId("browser-suggestions")
        onCountChanged: currentIndex = -1

        delegate: ItemDelegate {
            id: row

            width: ListView.view.width
            height: Theme.controlHeight
            focusPolicy: Qt.NoFocus
            highlighted: ListView.isCurrentItem
            text: model.suggestion
            Accessible.name: text
            Accessible.selectable: true
            Accessible.selected: highlighted
            Accessible.onPressAction: clicked()
            onClicked: popup.chosen(model.suggestion)

            contentItem: Text {
                id: label

                leftPadding: 8
                text: popup.marked(model.suggestion)
                textFormat: Text.StyledText
                font.pixelSize: Theme.body
                color: Theme.text
                verticalAlignment: Text.AlignVCenter
                elide: Text.ElideRight
            }

            WholeText {
                label: label
                text: model.suggestion
                wanted: row.hovered || row.highlighted
            }

            background: Rectangle {
                radius: Theme.radius - 2
                color: row.highlighted ? Theme.accentSoft : (row.hovered ? Theme.hover : "transparent")
            }
        }

        ScrollBar.vertical: Bar {}
    }

    function moveBy(step) {
        if (!opened)
            return;
        var next = words.currentIndex + step;
        words.currentIndex = next < -1 ? words.count - 1 : (next >= words.count ? -1 : next);
    }

    // With every occurrence of what is typed in bold. Marks go in before anything is escaped: an "a" is to be
    // found in "Flora & Fauna", but not in "&amp;".
    function marked(word) {
        var typed = model.searchString.replace(/[.*+?^${}()|[\]\\]/g, "\\$&");
        if (typed === "")
            return escaped(word);
        var pieces = word.split(new RegExp("(" + typed + ")", "i")).map(escaped);
        return pieces.map((piece, i) => i % 2 === 1 ? "<b>" + piece + "</b>" : piece).join("");
    }

    function escaped(text) {
        return text.replace(/&/g, "&amp;").replace(/</g, "&lt;").replace(/>/g, "&gt;");
    }

    function currentWord() {
        return words.currentIndex < 0 ? "" : model.suggestionAt(words.currentIndex);
    }
}
