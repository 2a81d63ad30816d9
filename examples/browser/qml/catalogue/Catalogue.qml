import QtQml 2.15
import Tamsel.Browser 1.0
import Tamsel.PackageManager 1.0

// Everything behind the views: the packages, where they come from, and how they are listed.
QtObject {
    id: catalogue

    readonly property PackageProvider provider: PackageProvider {
        onTranslationsChanged: catalogue.listing.reload(true)
        onPackageIndexChanged: catalogue.checkCategory()
    }

    readonly property Instantiator sources: Instantiator {
        model: Session.directories
        delegate: LocalSource {
            path: modelData
        }
        onObjectAdded: catalogue.provider.sources.push(object)
    }

    // By number: a list of objects is another one whenever texts are translated anew, and the servers with it.
    readonly property Instantiator servers: Instantiator {
        model: Session.servers.length
        delegate: PackageServerSource {
            readonly property var server: Session.servers[index] || {}

            url: server.url || ""
            token: server.token || ""
            user: server.user || ""
            password: server.password || ""
        }
        onObjectAdded: catalogue.provider.sources.push(object)
    }

    readonly property Instantiator databases: Instantiator {
        model: Session.databases.length
        delegate: CouchDBSource { url: Session.databases[index] || "" }
        onObjectAdded: catalogue.provider.sources.push(object)
    }

    // A database does not tell that it has answered; it is asked after two seconds.
    readonly property Timer firstAnswer: Timer {
        interval: 10000
        running: Session.databases.length > 0
    }

    readonly property TranslationState translations: TranslationState {
        packageProvider: catalogue.provider
        onSettledChanged: catalogue.started = catalogue.started || settled
    }

    readonly property Connections languageChoice: Connections {
        target: Session

        function onLanguageChanged() {
            if (catalogue.listing.wholeWord)
                catalogue.searchedKeyword.keep(catalogue.listing.searchText);
            catalogue.translations.followLanguage();
        }
    }

    readonly property RenamedKeyword searchedKeyword: RenamedKeyword {
        packageProvider: catalogue.provider
        onRenamed: {
            if (catalogue.listing.wholeWord)
                catalogue.listing.searchText = name;
        }
    }

    readonly property OpenedPackages opened: OpenedPackages {
        packageProvider: catalogue.provider
    }

    readonly property CatalogueTypes types: CatalogueTypes {
        packageProvider: catalogue.provider
    }

    readonly property CategoryListModel categories: CategoryListModel {
        packageProvider: catalogue.provider
        packageType: catalogue.listing.packageType
        onModelReset: {
            ++catalogue.categoryRevision;
            catalogue.checkCategory();
        }
    }

    readonly property KeywordSuggestionModel suggestions: KeywordSuggestionModel {
        packageProvider: catalogue.provider
        packageType: catalogue.listing.packageType
    }

    readonly property Listing listing: Listing {
        provider: catalogue.provider
        active: catalogue.started
    }

    // Grows with each list of categories: they may have other names in it.
    property int categoryRevision: 0

    // Becomes true when titles can be shown, and stays so.
    property bool started: false

    readonly property bool empty: started && provider.packageCount === 0

    readonly property var missingDirectories: {
        var missing = [];
        for (var i = 0; i < provider.sources.length; ++i) {
            var source = provider.sources[i];
            if (source instanceof LocalSource && !source.exists)
                missing.push(source.path);
        }
        return missing;
    }

    readonly property var connectingServers: serversWith(PackageServerSource.Connecting)
    readonly property bool connecting: connectingServers.length > 0 || firstAnswer.running
    readonly property var unreachableServers: serversWith(PackageServerSource.Unreachable)
    readonly property var untrustedServers: serversWith(PackageServerSource.Untrusted)
    property int away: 0

    // Pictures that a server did not give are not asked for again unless their cards are made anew.
    onUnreachableServersChanged: {
        if (unreachableServers.length < away)
            listing.reload(true);
        away = unreachableServers.length;
    }

    function serversWith(status) {
        var urls = [];
        for (var i = 0; i < provider.sources.length; ++i) {
            var source = provider.sources[i];
            if (source instanceof PackageServerSource && source.status === status)
                urls.push(Session.displayed(source.url));
        }
        return urls;
    }

    function lookForChanges() {
        provider.refresh();
        provider.update();
    }

    // A category that leads to no package of the chosen type, or that is gone, would hide everything.
    function checkCategory() {
        if (listing.categoryId !== "" && categories.rowCount() > 0 && categoryRow(listing.categoryId) < 0)
            listing.categoryId = "";
    }

    function categoryRow(id) {
        var found = categories.match(categories.index(0, 0), 0, id, 1, Qt.MatchExactly);
        return found.length > 0 ? found[0].row : -1;
    }

    function categoryName(id) {
        var row = categoryRow(id);
        return row < 0 ? "" : categories.data(categories.index(row, 0), 1) || id;
    }
}
