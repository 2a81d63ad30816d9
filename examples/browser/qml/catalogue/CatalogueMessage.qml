import QtQuick 2.15
import Tamsel.Browser 1.0
import "../controls"

// What there is to say instead of packages: a directory is missing, there are no packages, or no hits.
Message {
    id: message

    property Catalogue catalogue
    readonly property bool missing: catalogue.empty && catalogue.missingDirectories.length > 0
    readonly property string kind: {
        if (!catalogue.started)
            return "";
        if (catalogue.empty)
            return missing ? "missing" : "empty";
        return catalogue.listing.hits === 0 && !catalogue.listing.busy ? "no-hits" : "";
    }

    visible: kind !== ""
    iconName: kind === "no-hits" ? "search" : "folder"
    title: {
        switch (kind) {
        case "missing":
            return qsTrId("browser-missing-title", catalogue.missingDirectories.length);
        case "empty":
            return qsTrId("browser-empty-title");
        default:
            return catalogue.listing.searchText === ""
                ? qsTrId("browser-no-hits-title")
                : qsTrId("browser-no-hits-search-title").arg(catalogue.listing.searchText);
        }
    }
    text: {
        switch (kind) {
        case "missing":
            return qsTrId("browser-missing-text", catalogue.missingDirectories.length);
        case "empty":
            return qsTrId("browser-empty-text");
        default:
            return qsTrId("browser-no-hits-text");
        }
    }
    detail: {
        if (kind === "missing")
            return catalogue.missingDirectories.join("\n");
        return kind === "empty" ? Session.directories.join("\n") : "";
    }
    buttonIcon: kind === "no-hits" ? "close" : "refresh"
    buttonText: kind === "no-hits" ? qsTrId("browser-clear-filters") : qsTrId("browser-look-again")

    onClicked: {
        if (kind === "no-hits")
            catalogue.listing.clearFilters();
        else
            catalogue.lookForChanges();
    }
}
