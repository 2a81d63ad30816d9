import QtQuick 2.15
import QtQuick.Controls 2.15
import "../theme"

// A tool tip in the colours of the theme.
ToolTip {
    id: tip

    delay: 600
    contentWidth: Math.min(implicitContentWidth, Theme.body * 28)
    font.pixelSize: Theme.small

    contentItem: Text {
        text: tip.text
        textFormat: Text.PlainText
        font: tip.font
        color: Theme.page
        wrapMode: Text.Wrap
    }

    background: Rectangle {
        radius: Theme.radius / 2
        color: Theme.text
    }
}
