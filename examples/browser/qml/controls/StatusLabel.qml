import QtQuick 2.15
import Tamsel.PackageManager 1.0
import "../theme"

// How far the installation of a package is, in a word with a mark.
Row {
    id: label

    property int status: PackageReference.Unknown
    property int pixelSize: Theme.small
    readonly property bool problem: status === PackageReference.Incomplete
                                    || status === PackageReference.Unavailable
    readonly property color color: {
        if (status === PackageReference.Unknown)
            return Theme.dim;
        return problem ? Theme.warning : Theme.accent;
    }

    spacing: 4

    Icon {
        anchors.verticalCenter: parent.verticalCenter
        visible: name !== ""
        name: Texts.statusIcon(label.status)
        size: label.pixelSize * 1.2
        color: label.color
    }

    Text {
        anchors.verticalCenter: parent.verticalCenter
        text: Texts.statusName(label.status)
        font.pixelSize: label.pixelSize
        color: label.color
    }
}
