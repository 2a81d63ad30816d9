import QtQml 2.15
import Tamsel.Browser 1.0
import Tamsel.PackageManager 1.0

// The packages that match the filters, in the chosen order.
QtObject {
    id: listing

    property PackageProvider provider
    // Whether there is something to list. Becomes true once.
    property bool active: false

    property string packageType
    property string categoryId
    property string searchText
    // Whether the text is to be a whole word of the catalogue, as one chosen from the suggestions is.
    property bool wholeWord: false
    property string order: "catalogue"

    readonly property bool filtered: packageType !== "" || categoryId !== "" || searchText !== ""

    // Number of packages in the list. Keeps its value while the list is being made anew, and changes once for
    // all the ranges of rows, thousands perhaps, that one letter more takes away.
    readonly property int hits: model.count
    property bool busy: true
    // Whether the view had better stay where it is when the rows are replaced.
    property bool keepPlace: true

    // The list is another one now, and is to be read from its beginning.
    signal startedOver()

    readonly property SortByText byTitle: SortByText {
        name: "title"
    }
    readonly property SortByIntegerField byYear: SortByIntegerField {
        name: "year"
    }
    readonly property ReverseSorter byYearReversed: ReverseSorter {
        sorter: listing.byYear
    }
    readonly property ReverseSorter byEditionReversed: ReverseSorter {
        SortByStringField {
            name: "edition"
        }
    }

    readonly property PackageListModel model: PackageListModel {
        packageType: listing.packageType
        matcher: PackageMatcherGroup {
            HasKeyword {
                keywordId: listing.categoryId
            }
            PackageMatcherGroup {
                matchRequirement: PackageMatcherGroup.MatchAny

                MatchesKeywordSearch {
                    searchString: listing.searchText
                    matchMode: listing.wholeWord ? MatchesKeywordSearch.FullMatch
                                                 : MatchesKeywordSearch.PartialMatch
                }
                ContainsText {
                    name: "title"
                    searchString: listing.wholeWord ? "" : listing.searchText
                }
            }
        }

        ManifestStringField {
            name: "title"
        }
        ManifestBooleanField {
            name: "featured"
        }
        ManifestFileField {
            name: "picture"
        }

        onModelReset: {
            if (!packageProvider)
                return;
            listing.busy = false;
            listing.keepPlace = true;
        }
    }

    onActiveChanged: reload(false)
    onOrderChanged: reload(false)
    onPackageTypeChanged: startedOver()
    onCategoryIdChanged: startedOver()
    onSearchTextChanged: startedOver()

    function clearFilters() {
        searchText = "";
        categoryId = "";
        packageType = "";
    }

    function sorter() {
        switch (order) {
        case "title":
            return byTitle;
        case "newest":
            return byYearReversed;
        case "oldest":
            return byYear;
        case "edition":
            return byEditionReversed;
        default:
            return null;
        }
    }

    // The model cannot move a row to the top, so another order goes through an empty list.
    function reload(stay) {
        if (!active)
            return;
        keepPlace = stay;
        busy = true;
        model.packageProvider = null;
        model.sorter = sorter();
        model.packageProvider = provider;
    }
}
