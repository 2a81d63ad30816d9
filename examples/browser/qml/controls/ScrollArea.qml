import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Window 2.15
import "../theme"

// A page that is longer than the window: scrolls by keys, and to whatever the keyboard goes to.
Flickable {
    id: area

    readonly property Item focusItem: Window.activeFocusItem

    clip: true
    contentWidth: width
    boundsBehavior: Flickable.StopAtBounds
    activeFocusOnTab: false
    ScrollBar.vertical: Bar {}

    onFocusItemChanged: reveal(focusItem)

    Keys.onUpPressed: scrollBy(-60)
    Keys.onDownPressed: scrollBy(60)
    Keys.onPressed: {
        switch (event.key) {
        case Qt.Key_PageUp:
            scrollBy(-height * 0.9);
            break;
        case Qt.Key_PageDown:
        case Qt.Key_Space:
            scrollBy(height * 0.9);
            break;
        case Qt.Key_Home:
            scrollBy(-contentHeight);
            break;
        case Qt.Key_End:
            scrollBy(contentHeight);
            break;
        default:
            return;
        }
        event.accepted = true;
    }

    function scrollTo(y) {
        contentY = Math.max(0, Math.min(y, contentHeight - height));
    }

    function scrollBy(distance) {
        scrollTo(contentY + distance);
    }

    function holds(item) {
        for (var above = item ? item.parent : null; above; above = above.parent) {
            if (above === contentItem)
                return true;
        }
        return false;
    }

    function reveal(item) {
        if (!holds(item))
            return;
        var top = item.mapToItem(contentItem, 0, 0).y;
        if (top < contentY + Theme.margin)
            scrollTo(top - Theme.margin);
        else if (top + item.height > contentY + height - Theme.margin)
            scrollTo(top + item.height - height + Theme.margin);
    }
}
