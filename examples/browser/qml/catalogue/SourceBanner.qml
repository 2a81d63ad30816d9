import QtQuick 2.15
import "../controls"
import "../theme"

// Names the sources that are away while there are packages to show.
Rectangle {
    id: banner

    property Catalogue catalogue
    readonly property var troubles: {
        var lines = [];
        tell(lines, "browser-missing-title", catalogue.missingDirectories);
        tell(lines, "browser-unreachable-title", catalogue.unreachableServers);
        tell(lines, "browser-untrusted-title", catalogue.untrustedServers);
        return lines;
    }

    visible: troubles.length > 0 && !catalogue.empty && catalogue.started
    implicitHeight: visible ? words.implicitHeight + 2 * Theme.gap : 0
    color: Theme.warningSoft
    Accessible.role: Accessible.AlertMessage
    Accessible.name: words.text

    Icon {
        id: mark

        anchors.left: parent.left
        anchors.leftMargin: Theme.margin
        anchors.verticalCenter: parent.verticalCenter
        name: "warning"
        color: Theme.warning
    }

    Text {
        id: words

        anchors.left: mark.right
        anchors.leftMargin: Theme.gap
        anchors.right: parent.right
        anchors.rightMargin: Theme.margin
        anchors.verticalCenter: parent.verticalCenter
        text: banner.troubles.join("\n")
        textFormat: Text.PlainText
        font.pixelSize: Theme.body
        color: Theme.text
        wrapMode: Text.Wrap
    }

    function tell(lines, title, places) {
        if (places.length > 0)
            lines.push(qsTrId(title, places.length) + ": " + places.join(", "));
    }
}
