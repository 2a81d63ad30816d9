<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en">
<context>
    <name></name>
    <message id="browser-title">
        <source></source>
        <translation>Catalogue</translation>
    </message>
    <message id="browser-window-title">
        <source></source>
        <translation>%1 – Catalogue</translation>
    </message>
    <message id="browser-search">
        <source></source>
        <translation>Search</translation>
    </message>
    <message id="browser-search-placeholder">
        <source></source>
        <translation>Search by title or keyword</translation>
    </message>
    <message id="browser-search-clear">
        <source></source>
        <translation>Clear the search</translation>
    </message>
    <message id="browser-suggestions">
        <source></source>
        <translation>Suggestions</translation>
    </message>
    <message id="browser-packages">
        <source></source>
        <translation>Packages</translation>
    </message>
    <message id="browser-loading">
        <source></source>
        <translation>Loading</translation>
    </message>
    <message id="browser-filters">
        <source></source>
        <translation>Filters</translation>
    </message>
    <message id="browser-filter-remove">
        <source></source>
        <translation>Remove the filter %1</translation>
    </message>
    <message id="browser-clear-filters">
        <source></source>
        <translation>Clear all filters</translation>
    </message>
    <message id="browser-types">
        <source></source>
        <translation>Sections</translation>
    </message>
    <message id="browser-types-all">
        <source></source>
        <translation>All packages</translation>
    </message>
    <message id="browser-categories">
        <source></source>
        <translation>Categories</translation>
    </message>
    <message id="browser-categories-all">
        <source></source>
        <translation>All categories</translation>
    </message>
    <message id="browser-order">
        <source></source>
        <translation>Sort by</translation>
    </message>
    <message id="browser-order-catalogue">
        <source></source>
        <translation>Catalogue order</translation>
    </message>
    <message id="browser-order-title">
        <source></source>
        <translation>Title</translation>
    </message>
    <message id="browser-order-newest">
        <source></source>
        <translation>Newest first</translation>
    </message>
    <message id="browser-order-oldest">
        <source></source>
        <translation>Oldest first</translation>
    </message>
    <message id="browser-order-edition">
        <source></source>
        <translation>Latest edition first</translation>
    </message>
    <message id="browser-hits" numerus="yes">
        <source></source>
        <translation>
            <numerusform>%Ln package</numerusform>
            <numerusform>%Ln packages</numerusform>
        </translation>
    </message>
    <message id="browser-look-for-changes">
        <source></source>
        <translation>Look for changes</translation>
    </message>
    <message id="browser-look-again">
        <source></source>
        <translation>Look again</translation>
    </message>
    <message id="browser-language">
        <source></source>
        <translation>Language</translation>
    </message>
    <message id="browser-language-system">
        <source></source>
        <translation>Like the system</translation>
    </message>
    <message id="browser-theme">
        <source></source>
        <translation>Appearance</translation>
    </message>
    <message id="browser-theme-system">
        <source></source>
        <translation>Like the system</translation>
    </message>
    <message id="browser-theme-light">
        <source></source>
        <translation>Light</translation>
    </message>
    <message id="browser-theme-dark">
        <source></source>
        <translation>Dark</translation>
    </message>
    <message id="browser-missing-title" numerus="yes">
        <source></source>
        <translation>
            <numerusform>A directory is missing</numerusform>
            <numerusform>%Ln directories are missing</numerusform>
        </translation>
    </message>
    <message id="browser-missing-text" numerus="yes">
        <source></source>
        <translation>
            <numerusform>The catalogue is read from this directory, but it does not exist:</numerusform>
            <numerusform>The catalogue is read from these directories, but they do not exist:</numerusform>
        </translation>
    </message>
    <message id="browser-unreachable-title" numerus="yes">
        <source></source>
        <translation>
            <numerusform>A package server cannot be reached</numerusform>
            <numerusform>%Ln package servers cannot be reached</numerusform>
        </translation>
    </message>
    <message id="browser-unreachable-text" numerus="yes">
        <source></source>
        <translation>
            <numerusform>This server does not answer, or refuses to. It will be asked again:</numerusform>
            <numerusform>These servers do not answer, or refuse to. They will be asked again:</numerusform>
        </translation>
    </message>
    <message id="browser-untrusted-title" numerus="yes">
        <source></source>
        <translation>
            <numerusform>A package server cannot be trusted</numerusform>
            <numerusform>%Ln package servers cannot be trusted</numerusform>
        </translation>
    </message>
    <message id="browser-untrusted-text" numerus="yes">
        <source></source>
        <translation>
            <numerusform>This server’s list of packages is damaged or not signed as it has to be:</numerusform>
            <numerusform>The lists of packages of these servers are damaged or not signed as they have to be:</numerusform>
        </translation>
    </message>
    <message id="browser-connecting-title">
        <source></source>
        <translation>Asking for packages</translation>
    </message>
    <message id="browser-connecting-text">
        <source></source>
        <translation>They appear here as soon as there is an answer.</translation>
    </message>
    <message id="browser-empty-title">
        <source></source>
        <translation>There are no packages here</translation>
    </message>
    <message id="browser-empty-text">
        <source></source>
        <translation>A catalogue has a folder named packages, with a manifest.json for each package. None was found in:</translation>
    </message>
    <message id="browser-empty-server-text" numerus="yes">
        <source></source>
        <translation>
            <numerusform>This package server answers, but has no packages:</numerusform>
            <numerusform>These package servers answer, but have no packages:</numerusform>
        </translation>
    </message>
    <message id="browser-empty-database-text" numerus="yes">
        <source></source>
        <translation>
            <numerusform>This database has no packages, or cannot be read. It will be asked again:</numerusform>
            <numerusform>These databases have no packages, or cannot be read. They will be asked again:</numerusform>
        </translation>
    </message>
    <message id="browser-empty-places-text">
        <source></source>
        <translation>None of these places has packages to show at the moment:</translation>
    </message>
    <message id="browser-no-hits-title">
        <source></source>
        <translation>No packages fit these filters</translation>
    </message>
    <message id="browser-no-hits-search-title">
        <source></source>
        <translation>Nothing found for “%1”</translation>
    </message>
    <message id="browser-no-hits-text">
        <source></source>
        <translation>Try another word, or take the filters away to see everything.</translation>
    </message>
    <message id="browser-back">
        <source></source>
        <translation>Back</translation>
    </message>
    <message id="browser-featured">
        <source></source>
        <translation>Recommended</translation>
    </message>
    <message id="browser-facts">
        <source></source>
        <translation>Facts</translation>
    </message>
    <message id="browser-required">
        <source></source>
        <translation>Comes with</translation>
    </message>
    <message id="browser-files">
        <source></source>
        <translation>Files</translation>
    </message>
    <message id="browser-file-open">
        <source></source>
        <translation>Open %1</translation>
    </message>
    <message id="browser-file-refused">
        <source></source>
        <translation>No application for it</translation>
    </message>
    <message id="browser-keywords">
        <source></source>
        <translation>Keywords</translation>
    </message>
    <message id="browser-more" numerus="yes">
        <source></source>
        <translation>
            <numerusform>Show %Ln more</numerusform>
            <numerusform>Show %Ln more</numerusform>
        </translation>
    </message>
    <message id="browser-status-installed">
        <source></source>
        <translation>Installed</translation>
    </message>
    <message id="browser-status-installing">
        <source></source>
        <translation>Installing</translation>
    </message>
    <message id="browser-status-incomplete">
        <source></source>
        <translation>Incomplete</translation>
    </message>
    <message id="browser-status-unavailable">
        <source></source>
        <translation>Not available</translation>
    </message>
    <message id="browser-status-unopened">
        <source></source>
        <translation>Not opened yet</translation>
    </message>
    <message id="browser-hint-incomplete">
        <source></source>
        <translation>Some files could not be installed. It will be tried again by itself, after a longer pause each time.</translation>
    </message>
    <message id="browser-hint-unavailable">
        <source></source>
        <translation>The catalogue does not have this package at the moment. It will appear here as soon as it is there.</translation>
    </message>
    <message id="browser-yes">
        <source></source>
        <translation>Yes</translation>
    </message>
    <message id="browser-no">
        <source></source>
        <translation>No</translation>
    </message>
    <message id="browser-hours">
        <source></source>
        <translation>%1 h</translation>
    </message>
    <message id="browser-years" numerus="yes">
        <source></source>
        <translation>
            <numerusform>%Ln year</numerusform>
            <numerusform>%Ln years</numerusform>
        </translation>
    </message>
    <message id="browser-size-bytes" numerus="yes">
        <source></source>
        <translation>
            <numerusform>%Ln byte</numerusform>
            <numerusform>%Ln bytes</numerusform>
        </translation>
    </message>
    <message id="browser-size-kilobytes">
        <source></source>
        <translation>%1 kB</translation>
    </message>
    <message id="browser-size-megabytes">
        <source></source>
        <translation>%1 MB</translation>
    </message>
    <message id="browser-season-all-year">
        <source></source>
        <translation>All year</translation>
    </message>
    <message id="browser-season-range">
        <source></source>
        <translation>%1 to %2</translation>
    </message>
    <message id="browser-type-none">
        <source></source>
        <translation>Other</translation>
    </message>
    <message id="browser-type-guide">
        <source></source>
        <translation>Field guides</translation>
    </message>
    <message id="browser-type-guide-bird">
        <source></source>
        <translation>Birds</translation>
    </message>
    <message id="browser-type-guide-tree">
        <source></source>
        <translation>Trees</translation>
    </message>
    <message id="browser-type-guide-flower">
        <source></source>
        <translation>Flowers</translation>
    </message>
    <message id="browser-type-map">
        <source></source>
        <translation>Maps</translation>
    </message>
    <message id="browser-type-map-base">
        <source></source>
        <translation>Overview maps</translation>
    </message>
    <message id="browser-type-map-region">
        <source></source>
        <translation>Hiking maps</translation>
    </message>
    <message id="browser-type-trail">
        <source></source>
        <translation>Tours</translation>
    </message>
    <message id="browser-type-trail-hiking">
        <source></source>
        <translation>Hiking</translation>
    </message>
    <message id="browser-type-trail-cycling">
        <source></source>
        <translation>Cycling</translation>
    </message>
    <message id="browser-type-sound">
        <source></source>
        <translation>Sounds</translation>
    </message>
    <message id="browser-type-sound-bird">
        <source></source>
        <translation>Bird sounds</translation>
    </message>
    <message id="browser-type-translation">
        <source></source>
        <translation>Languages</translation>
    </message>
    <message id="browser-fact-latinName">
        <source></source>
        <translation>Latin name</translation>
    </message>
    <message id="browser-fact-scale">
        <source></source>
        <translation>Scale</translation>
    </message>
    <message id="browser-fact-sizeKm">
        <source></source>
        <translation>Width</translation>
    </message>
    <message id="browser-fact-lengthKm">
        <source></source>
        <translation>Length</translation>
    </message>
    <message id="browser-fact-ascentM">
        <source></source>
        <translation>Ascent</translation>
    </message>
    <message id="browser-fact-hours">
        <source></source>
        <translation>Duration</translation>
    </message>
    <message id="browser-fact-difficulty">
        <source></source>
        <translation>Difficulty</translation>
    </message>
    <message id="browser-fact-lengthCm">
        <source></source>
        <translation>Body length</translation>
    </message>
    <message id="browser-fact-wingspanCm">
        <source></source>
        <translation>Wingspan</translation>
    </message>
    <message id="browser-fact-heightM">
        <source></source>
        <translation>Height</translation>
    </message>
    <message id="browser-fact-heightCm">
        <source></source>
        <translation>Height</translation>
    </message>
    <message id="browser-fact-ageYears">
        <source></source>
        <translation>Age</translation>
    </message>
    <message id="browser-fact-durationS">
        <source></source>
        <translation>Duration</translation>
    </message>
    <message id="browser-fact-season">
        <source></source>
        <translation>Season</translation>
    </message>
    <message id="browser-fact-edition">
        <source></source>
        <translation>Edition</translation>
    </message>
    <message id="browser-fact-year">
        <source></source>
        <translation>First published</translation>
    </message>
    <message id="browser-fact-version">
        <source></source>
        <translation>Version</translation>
    </message>
    <message id="browser-fact-license">
        <source></source>
        <translation>Licence</translation>
    </message>
</context>
</TS>
