import QtQuick 2.15
import Tamsel.Browser 1.0
import "../controls"

// What there is to say instead of packages: why there are none, or that there are no hits.
Message {
    id: message

    property Catalogue catalogue
    readonly property string kind: {
        if (!catalogue.started)
            return "";
        if (catalogue.empty)
            return reasonOfEmptiness();
        // Without filters the list is only a little late.
        var listing = catalogue.listing;
        return listing.filtered && listing.hits === 0 && !listing.busy ? "no-hits" : "";
    }

    visible: kind !== ""
    iconName: {
        switch (kind) {
        case "no-hits":
            return "search";
        case "unreachable":
        case "untrusted":
            return "warning";
        case "connecting":
            return "package";
        default:
            return Session.directories.length > 0 ? "folder" : "package";
        }
    }
    title: {
        switch (kind) {
        case "missing":
            return qsTrId("browser-missing-title", catalogue.missingDirectories.length);
        case "unreachable":
            return qsTrId("browser-unreachable-title", catalogue.unreachableServers.length);
        case "untrusted":
            return qsTrId("browser-untrusted-title", catalogue.untrustedServers.length);
        case "connecting":
            return qsTrId("browser-connecting-title");
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
        case "unreachable":
            return qsTrId("browser-unreachable-text", catalogue.unreachableServers.length);
        case "untrusted":
            return qsTrId("browser-untrusted-text", catalogue.untrustedServers.length);
        case "connecting":
            return qsTrId("browser-connecting-text");
        case "empty":
            return textOfEmptiness();
        default:
            return qsTrId("browser-no-hits-text");
        }
    }
    detail: {
        switch (kind) {
        case "missing":
            return catalogue.missingDirectories.join("\n");
        case "unreachable":
            return catalogue.unreachableServers.join("\n");
        case "untrusted":
            return catalogue.untrustedServers.join("\n");
        case "empty":
            return Session.directories.concat(Session.servers.map(server => Session.displayed(server.url)),
                                              Session.databases.map(url => Session.displayed(url))).join("\n");
        default:
            return "";
        }
    }
    buttonIcon: kind === "no-hits" ? "close" : "refresh"
    buttonText: kind === "no-hits" ? qsTrId("browser-clear-filters") : qsTrId("browser-look-again")

    onClicked: {
        if (kind === "no-hits")
            catalogue.listing.clearFilters();
        else
            catalogue.lookForChanges();
    }

    // A database does not tell whether it is away or empty.
    function textOfEmptiness() {
        var directories = Session.directories.length;
        var servers = Session.servers.length;
        var databases = Session.databases.length;
        if (servers + databases === 0)
            return qsTrId("browser-empty-text");
        if (directories + databases === 0)
            return qsTrId("browser-empty-server-text", servers);
        if (directories + servers === 0)
            return qsTrId("browser-empty-database-text", databases);
        return qsTrId("browser-empty-places-text");
    }

    function reasonOfEmptiness() {
        if (catalogue.missingDirectories.length > 0)
            return "missing";
        if (catalogue.unreachableServers.length > 0)
            return "unreachable";
        if (catalogue.untrustedServers.length > 0)
            return "untrusted";
        return catalogue.connecting ? "connecting" : "empty";
    }
}
