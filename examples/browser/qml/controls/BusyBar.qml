import QtQuick 2.15
import QtQuick.Controls 2.15
import Tamsel.Browser 1.0
import "../theme"

// Shows that work is going on whose end cannot be foreseen.
ProgressBar {
    id: bar

    implicitHeight: 6
    indeterminate: true

    background: Rectangle {
        radius: height / 2
        color: Theme.line
    }

    contentItem: Item {
        clip: true

        Rectangle {
            id: mark

            x: (parent.width - width) / 2
            width: parent.width * 0.35
            height: parent.height
            radius: height / 2
            color: Theme.accent
        }

        NumberAnimation {
            target: mark
            property: "x"
            from: -mark.width
            to: bar.width
            duration: 1400
            loops: Animation.Infinite
            running: bar.visible && Session.animated
        }
    }
}
