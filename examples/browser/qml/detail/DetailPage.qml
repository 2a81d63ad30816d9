import QtQuick 2.15
import QtQuick.Controls 2.15
import Tamsel.Browser 1.0
import Tamsel.PackageManager 1.0
import "../catalogue"
import "../controls"
import "../theme"

// Everything about one package. Being shown here is what installs it.
FocusScope {
    id: page

    property Catalogue catalogue
    property string packageId
    readonly property PackageReference reference: catalogue.opened.open(packageId)
    readonly property string presentTitle: fields.manifest.title || ""
    // Keeps the name of a package that goes while it is being looked at.
    property string title: packageId

    signal closed()
    signal packageChosen(string id)
    signal keywordChosen(var keyword)

    StackView.onActivated: scroller.forceActiveFocus()
    // Not a shortcut: while a menu is open, the key is there to close it.
    Keys.onEscapePressed: closed()
    onPresentTitleChanged: {
        if (presentTitle !== "")
            title = presentTitle;
    }

    PackageDetails {
        id: details

        packageReference: page.reference
    }

    PackageData {
        id: fields

        packageReference: page.reference

        ManifestStringField {
            name: "title"
        }
        ManifestStringField {
            name: "description"
        }
        ManifestBooleanField {
            name: "featured"
        }
        ManifestSizeField {
            name: "pictureSize"
            defaultValue: "16x10"
        }
    }

    Rectangle {
        anchors.fill: parent
        color: Theme.page
    }

    DetailBar {
        id: bar

        width: parent.width
        z: 1
        catalogue: page.catalogue
        title: page.title
        titleShown: scroller.contentY > content.headingEnd
        onClosed: page.closed()
    }

    ScrollArea {
        id: scroller

        anchors.top: bar.bottom
        anchors.bottom: parent.bottom
        width: parent.width
        focus: true
        contentHeight: content.height + 2 * content.y

        DetailContent {
            id: content

            x: Math.round((scroller.width - width) / 2)
            y: Theme.margin
            width: Math.min(scroller.width - 2 * Theme.margin, 1080)
            pageHeight: scroller.height
            narrow: page.width < Theme.narrowWidth
            catalogue: page.catalogue
            reference: page.reference
            details: details
            title: page.title
            fields: fields.manifest
            onPackageChosen: page.packageChosen(id)
            onKeywordChosen: page.keywordChosen(keyword)
        }
    }
}
