import QtQuick 2.15
import QtQuick.Controls 2.15
import "../controls"
import "../theme"

// A headed list of filters. Up and down move the mark, Enter or Space choose. The first choice, which takes
// the filter away, is part of the head: row -1.
ListView {
    id: list

    property string title
    property string allText
    property int allNumber: -1
    property bool allChosen: true
    readonly property int page: Math.max(1, Math.floor((height - headerItem.height) / (Theme.body * 2)))

    signal chosenAt(int row)

    clip: true
    activeFocusOnTab: true
    boundsBehavior: Flickable.StopAtBounds
    keyNavigationEnabled: false
    highlightMoveDuration: Theme.moveTime
    headerPositioning: ListView.OverlayHeader
    currentIndex: -1
    // The head lies on top of what is scrolled below it, and would hide the mark.
    highlightRangeMode: ListView.ApplyRange
    preferredHighlightBegin: headerItem.height
    preferredHighlightEnd: height
    cacheBuffer: 0
    Accessible.role: Accessible.List
    Accessible.name: title

    header: Rectangle {
        z: 2
        width: list.width
        height: heading.height + allItem.height
        color: Theme.page

        Text {
            id: heading

            width: parent.width
            height: Math.round(Theme.body * 2)
            leftPadding: 12
            bottomPadding: 6
            verticalAlignment: Text.AlignBottom
            text: list.title
            font.pixelSize: Theme.small
            font.bold: true
            font.capitalization: Font.AllUppercase
            font.letterSpacing: 0.6
            color: Theme.dim
            elide: Text.ElideRight
        }

        SideItem {
            id: allItem

            anchors.top: heading.bottom
            width: parent.width - 14
            text: list.allText
            number: list.allNumber
            chosen: list.allChosen
            focus: list.currentIndex < 0
            current: focus && list.activeFocus
            onClicked: list.choose(-1)
        }
    }

    ScrollBar.vertical: Bar {}

    Keys.onUpPressed: moveTo(currentIndex - 1)
    Keys.onDownPressed: moveTo(currentIndex + 1)
    Keys.onReturnPressed: chosenAt(currentIndex)
    Keys.onEnterPressed: chosenAt(currentIndex)
    Keys.onSpacePressed: chosenAt(currentIndex)
    Keys.onPressed: {
        if (event.key === Qt.Key_Home)
            moveTo(-1);
        else if (event.key === Qt.Key_End)
            moveTo(count - 1);
        else if (event.key === Qt.Key_PageUp)
            moveTo(currentIndex - page);
        else if (event.key === Qt.Key_PageDown)
            moveTo(currentIndex + page);
        else
            return;
        event.accepted = true;
    }

    function moveTo(row) {
        currentIndex = Math.max(-1, Math.min(row, count - 1));
        if (currentIndex <= 0)
            positionViewAtBeginning();
    }

    function choose(row) {
        moveTo(row);
        chosenAt(row);
    }
}
