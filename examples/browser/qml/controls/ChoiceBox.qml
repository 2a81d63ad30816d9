import QtQuick 2.15
import QtQuick.Controls 2.15
import "../theme"

// A combo box whose model holds keys. Texts come from textOf(key): they follow the language without the model
// being replaced, which would lose the choice.
ComboBox {
    id: box

    property var textOf: function(key) { return key; }
    readonly property string chosenText: currentValue === undefined ? "" : textOf(currentValue)

    textRole: "key"
    valueRole: "key"
    displayText: chosenText
    implicitHeight: Theme.controlHeight
    leftPadding: 12
    rightPadding: 8
    font.pixelSize: Theme.body

    contentItem: Text {
        leftPadding: Theme.reversed ? box.indicator.width + 4 : 0
        rightPadding: Theme.reversed ? 0 : box.indicator.width + 4
        text: box.displayText
        font: box.font
        color: Theme.text
        verticalAlignment: Text.AlignVCenter
        elide: Text.ElideRight
    }

    indicator: Icon {
        x: Theme.reversed ? box.rightPadding : box.width - width - box.rightPadding
        anchors.verticalCenter: parent.verticalCenter
        name: "chevron-down"
        size: Theme.body * 1.2
        color: Theme.dim
    }

    background: Rectangle {
        radius: Theme.radius
        color: box.down ? Theme.pressed : (box.hovered ? Theme.hover : Theme.surface)
        border.color: Theme.outline

        FocusRing {
            shown: box.visualFocus
        }
    }

    delegate: ItemDelegate {
        id: choice

        width: ListView.view.width
        height: Theme.controlHeight
        highlighted: box.highlightedIndex === index
        Accessible.name: label.text
        Accessible.selectable: true
        Accessible.selected: box.currentIndex === index
        Accessible.onPressAction: clicked()

        contentItem: Text {
            id: label

            text: box.textOf(key)
            font.pixelSize: Theme.body
            font.bold: box.currentIndex === index
            color: Theme.text
            verticalAlignment: Text.AlignVCenter
            elide: Text.ElideRight
        }

        background: Rectangle {
            color: choice.highlighted ? Theme.hover : "transparent"
        }
    }

    popup: Popup {
        y: box.height + 4
        width: Math.max(box.width, 220)
        x: Theme.reversed ? 0 : box.width - width
        padding: 4
        implicitHeight: contentItem.implicitHeight + topPadding + bottomPadding

        contentItem: ListView {
            clip: true
            implicitHeight: contentHeight
            model: box.popup.visible ? box.delegateModel : null
            currentIndex: box.highlightedIndex
        }

        background: Rectangle {
            radius: Theme.radius
            color: Theme.raised
            border.color: Theme.outline
        }
    }
}
