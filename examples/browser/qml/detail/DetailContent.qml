import QtQuick 2.15
import Tamsel.Browser 1.0
import Tamsel.PackageManager 1.0
import "../catalogue"
import "../theme"

// The parts of a detail page: one below the other, or in two columns of their own heights.
Item {
    id: content

    property Catalogue catalogue
    property PackageReference reference
    property PackageDetails details
    property var fields
    property string title
    property bool narrow: false
    property real pageHeight

    readonly property real gap: Theme.margin * 1.5
    readonly property real columnWidth: narrow ? width : Math.round((width - gap) / 2)
    readonly property real firstColumn: narrow || !Theme.reversed ? 0 : columnWidth + gap
    readonly property real secondColumn: narrow || Theme.reversed ? 0 : columnWidth + gap
    // Where the title is out of sight.
    readonly property real headingEnd: heading.y + Theme.huge * 2

    signal packageChosen(string id)
    signal keywordChosen(var keyword)

    height: Math.max(end(facts), end(sections))

    function end(item) {
        return item.visible ? item.y + item.height : item.y - gap;
    }

    DetailPicture {
        id: picture

        x: content.firstColumn
        width: content.columnWidth
        height: implicitHeight
        source: content.details.picture
        naturalSize: content.fields.pictureSize
        maximumHeight: content.narrow ? content.pageHeight * 0.5 : content.pageHeight
    }

    DetailHeading {
        id: heading

        x: content.secondColumn
        y: content.narrow ? picture.height + content.gap : 0
        width: content.columnWidth
        title: content.title
        description: content.fields.description
        type: content.details.type
        featured: content.fields.featured
        status: content.reference ? content.reference.status : PackageReference.Unavailable
        onRetryWanted: content.catalogue.lookForChanges()
    }

    FactList {
        id: facts

        x: content.firstColumn
        y: content.end(content.narrow ? heading : picture) + content.gap
        width: content.columnWidth
        visible: facts.facts.length > 0
        facts: content.details.facts
    }

    Column {
        id: sections

        x: content.secondColumn
        y: content.end(content.narrow ? facts : heading) + content.gap
        width: content.columnWidth
        spacing: content.gap

        RequiredList {
            width: parent.width
            visible: ids.length > 0
            catalogue: content.catalogue
            ids: content.details.required
            onPackageChosen: content.packageChosen(id)
        }

        FileList {
            width: parent.width
            visible: files.length > 0
            files: content.details.files
        }

        KeywordList {
            width: parent.width
            visible: keywords.length > 0
            keywords: content.details.keywords
            onKeywordChosen: content.keywordChosen(keyword)
        }
    }
}
