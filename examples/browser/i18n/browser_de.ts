<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de">
<context>
    <name></name>
    <message id="browser-title">
        <source></source>
        <translation>Katalog</translation>
    </message>
    <message id="browser-window-title">
        <source></source>
        <translation>%1 – Katalog</translation>
    </message>
    <message id="browser-search">
        <source></source>
        <translation>Suche</translation>
    </message>
    <message id="browser-search-placeholder">
        <source></source>
        <translation>Titel oder Stichwort suchen</translation>
    </message>
    <message id="browser-search-clear">
        <source></source>
        <translation>Suche leeren</translation>
    </message>
    <message id="browser-suggestions">
        <source></source>
        <translation>Vorschläge</translation>
    </message>
    <message id="browser-packages">
        <source></source>
        <translation>Pakete</translation>
    </message>
    <message id="browser-loading">
        <source></source>
        <translation>Wird geladen</translation>
    </message>
    <message id="browser-filters">
        <source></source>
        <translation>Filter</translation>
    </message>
    <message id="browser-filter-remove">
        <source></source>
        <translation>Filter %1 entfernen</translation>
    </message>
    <message id="browser-clear-filters">
        <source></source>
        <translation>Alle Filter aufheben</translation>
    </message>
    <message id="browser-types">
        <source></source>
        <translation>Bereiche</translation>
    </message>
    <message id="browser-types-all">
        <source></source>
        <translation>Alle Pakete</translation>
    </message>
    <message id="browser-categories">
        <source></source>
        <translation>Kategorien</translation>
    </message>
    <message id="browser-categories-all">
        <source></source>
        <translation>Alle Kategorien</translation>
    </message>
    <message id="browser-order">
        <source></source>
        <translation>Sortieren nach</translation>
    </message>
    <message id="browser-order-catalogue">
        <source></source>
        <translation>Wie im Katalog</translation>
    </message>
    <message id="browser-order-title">
        <source></source>
        <translation>Titel</translation>
    </message>
    <message id="browser-order-newest">
        <source></source>
        <translation>Neueste zuerst</translation>
    </message>
    <message id="browser-order-oldest">
        <source></source>
        <translation>Älteste zuerst</translation>
    </message>
    <message id="browser-order-edition">
        <source></source>
        <translation>Neueste Ausgabe zuerst</translation>
    </message>
    <message id="browser-hits" numerus="yes">
        <source></source>
        <translation>
            <numerusform>%Ln Paket</numerusform>
            <numerusform>%Ln Pakete</numerusform>
        </translation>
    </message>
    <message id="browser-look-for-changes">
        <source></source>
        <translation>Nach Änderungen sehen</translation>
    </message>
    <message id="browser-look-again">
        <source></source>
        <translation>Erneut nachsehen</translation>
    </message>
    <message id="browser-language">
        <source></source>
        <translation>Sprache</translation>
    </message>
    <message id="browser-language-system">
        <source></source>
        <translation>Wie das System</translation>
    </message>
    <message id="browser-theme">
        <source></source>
        <translation>Darstellung</translation>
    </message>
    <message id="browser-theme-system">
        <source></source>
        <translation>Wie das System</translation>
    </message>
    <message id="browser-theme-light">
        <source></source>
        <translation>Hell</translation>
    </message>
    <message id="browser-theme-dark">
        <source></source>
        <translation>Dunkel</translation>
    </message>
    <message id="browser-missing-title" numerus="yes">
        <source></source>
        <translation>
            <numerusform>Ein Verzeichnis fehlt</numerusform>
            <numerusform>%Ln Verzeichnisse fehlen</numerusform>
        </translation>
    </message>
    <message id="browser-missing-text" numerus="yes">
        <source></source>
        <translation>
            <numerusform>Der Katalog wird aus diesem Verzeichnis gelesen, doch es ist nicht vorhanden:</numerusform>
            <numerusform>Der Katalog wird aus diesen Verzeichnissen gelesen, doch sie sind nicht vorhanden:</numerusform>
        </translation>
    </message>
    <message id="browser-unreachable-title" numerus="yes">
        <source></source>
        <translation>
            <numerusform>Ein Paketserver ist nicht erreichbar</numerusform>
            <numerusform>%Ln Paketserver sind nicht erreichbar</numerusform>
        </translation>
    </message>
    <message id="browser-unreachable-text" numerus="yes">
        <source></source>
        <translation>
            <numerusform>Dieser Server antwortet nicht oder lässt die Anfrage nicht zu. Er wird immer wieder gefragt:</numerusform>
            <numerusform>Diese Server antworten nicht oder lassen die Anfrage nicht zu. Sie werden immer wieder gefragt:</numerusform>
        </translation>
    </message>
    <message id="browser-untrusted-title" numerus="yes">
        <source></source>
        <translation>
            <numerusform>Einem Paketserver ist nicht zu trauen</numerusform>
            <numerusform>%Ln Paketservern ist nicht zu trauen</numerusform>
        </translation>
    </message>
    <message id="browser-untrusted-text" numerus="yes">
        <source></source>
        <translation>
            <numerusform>Das Verzeichnis der Pakete dieses Servers ist beschädigt oder nicht richtig unterschrieben:</numerusform>
            <numerusform>Die Verzeichnisse der Pakete dieser Server sind beschädigt oder nicht richtig unterschrieben:</numerusform>
        </translation>
    </message>
    <message id="browser-connecting-title">
        <source></source>
        <translation>Pakete werden abgefragt</translation>
    </message>
    <message id="browser-connecting-text">
        <source></source>
        <translation>Sie erscheinen hier, sobald eine Antwort da ist.</translation>
    </message>
    <message id="browser-empty-title">
        <source></source>
        <translation>Hier sind keine Pakete</translation>
    </message>
    <message id="browser-empty-text">
        <source></source>
        <translation>Ein Katalog hat einen Ordner namens packages mit einer Datei manifest.json je Paket. Nichts davon war hier zu finden:</translation>
    </message>
    <message id="browser-empty-server-text" numerus="yes">
        <source></source>
        <translation>
            <numerusform>Dieser Paketserver antwortet, hat aber keine Pakete:</numerusform>
            <numerusform>Diese Paketserver antworten, haben aber keine Pakete:</numerusform>
        </translation>
    </message>
    <message id="browser-empty-database-text" numerus="yes">
        <source></source>
        <translation>
            <numerusform>Diese Datenbank hat keine Pakete oder ist nicht lesbar. Sie wird immer wieder gefragt:</numerusform>
            <numerusform>Diese Datenbanken haben keine Pakete oder sind nicht lesbar. Sie werden immer wieder gefragt:</numerusform>
        </translation>
    </message>
    <message id="browser-empty-places-text">
        <source></source>
        <translation>An keinem dieser Orte gibt es zur Zeit Pakete zu zeigen:</translation>
    </message>
    <message id="browser-no-hits-title">
        <source></source>
        <translation>Kein Paket passt zu diesen Filtern</translation>
    </message>
    <message id="browser-no-hits-search-title">
        <source></source>
        <translation>Nichts gefunden zu „%1“</translation>
    </message>
    <message id="browser-no-hits-text">
        <source></source>
        <translation>Versuchen Sie ein anderes Wort, oder heben Sie die Filter auf, um alles zu sehen.</translation>
    </message>
    <message id="browser-back">
        <source></source>
        <translation>Zurück</translation>
    </message>
    <message id="browser-featured">
        <source></source>
        <translation>Empfohlen</translation>
    </message>
    <message id="browser-facts">
        <source></source>
        <translation>Angaben</translation>
    </message>
    <message id="browser-required">
        <source></source>
        <translation>Gehört dazu</translation>
    </message>
    <message id="browser-files">
        <source></source>
        <translation>Dateien</translation>
    </message>
    <message id="browser-file-open">
        <source></source>
        <translation>%1 öffnen</translation>
    </message>
    <message id="browser-file-refused">
        <source></source>
        <translation>Kein Programm dafür</translation>
    </message>
    <message id="browser-keywords">
        <source></source>
        <translation>Stichwörter</translation>
    </message>
    <message id="browser-more" numerus="yes">
        <source></source>
        <translation>
            <numerusform>Noch %Ln zeigen</numerusform>
            <numerusform>Noch %Ln zeigen</numerusform>
        </translation>
    </message>
    <message id="browser-status-installed">
        <source></source>
        <translation>Installiert</translation>
    </message>
    <message id="browser-status-installing">
        <source></source>
        <translation>Wird installiert</translation>
    </message>
    <message id="browser-status-incomplete">
        <source></source>
        <translation>Unvollständig</translation>
    </message>
    <message id="browser-status-unavailable">
        <source></source>
        <translation>Nicht verfügbar</translation>
    </message>
    <message id="browser-status-unopened">
        <source></source>
        <translation>Noch nicht geöffnet</translation>
    </message>
    <message id="browser-hint-incomplete">
        <source></source>
        <translation>Einige Dateien ließen sich nicht installieren. Es wird von selbst erneut versucht, nach jeweils längerer Pause.</translation>
    </message>
    <message id="browser-hint-unavailable">
        <source></source>
        <translation>Der Katalog enthält dieses Paket zurzeit nicht. Sobald es da ist, erscheint es hier.</translation>
    </message>
    <message id="browser-yes">
        <source></source>
        <translation>Ja</translation>
    </message>
    <message id="browser-no">
        <source></source>
        <translation>Nein</translation>
    </message>
    <message id="browser-hours">
        <source></source>
        <translation>%1 Std.</translation>
    </message>
    <message id="browser-years" numerus="yes">
        <source></source>
        <translation>
            <numerusform>%Ln Jahr</numerusform>
            <numerusform>%Ln Jahre</numerusform>
        </translation>
    </message>
    <message id="browser-size-bytes" numerus="yes">
        <source></source>
        <translation>
            <numerusform>%Ln Byte</numerusform>
            <numerusform>%Ln Byte</numerusform>
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
        <translation>Ganzjährig</translation>
    </message>
    <message id="browser-season-range">
        <source></source>
        <translation>%1 bis %2</translation>
    </message>
    <message id="browser-type-none">
        <source></source>
        <translation>Sonstiges</translation>
    </message>
    <message id="browser-type-guide">
        <source></source>
        <translation>Naturführer</translation>
    </message>
    <message id="browser-type-guide-bird">
        <source></source>
        <translation>Vögel</translation>
    </message>
    <message id="browser-type-guide-tree">
        <source></source>
        <translation>Bäume</translation>
    </message>
    <message id="browser-type-guide-flower">
        <source></source>
        <translation>Blumen</translation>
    </message>
    <message id="browser-type-map">
        <source></source>
        <translation>Karten</translation>
    </message>
    <message id="browser-type-map-base">
        <source></source>
        <translation>Übersichtskarten</translation>
    </message>
    <message id="browser-type-map-region">
        <source></source>
        <translation>Wanderkarten</translation>
    </message>
    <message id="browser-type-trail">
        <source></source>
        <translation>Touren</translation>
    </message>
    <message id="browser-type-trail-hiking">
        <source></source>
        <translation>Wandern</translation>
    </message>
    <message id="browser-type-trail-cycling">
        <source></source>
        <translation>Radfahren</translation>
    </message>
    <message id="browser-type-sound">
        <source></source>
        <translation>Klänge</translation>
    </message>
    <message id="browser-type-sound-bird">
        <source></source>
        <translation>Vogelstimmen</translation>
    </message>
    <message id="browser-type-translation">
        <source></source>
        <translation>Sprachen</translation>
    </message>
    <message id="browser-fact-latinName">
        <source></source>
        <translation>Lateinischer Name</translation>
    </message>
    <message id="browser-fact-scale">
        <source></source>
        <translation>Maßstab</translation>
    </message>
    <message id="browser-fact-sizeKm">
        <source></source>
        <translation>Breite</translation>
    </message>
    <message id="browser-fact-lengthKm">
        <source></source>
        <translation>Länge</translation>
    </message>
    <message id="browser-fact-ascentM">
        <source></source>
        <translation>Aufstieg</translation>
    </message>
    <message id="browser-fact-hours">
        <source></source>
        <translation>Dauer</translation>
    </message>
    <message id="browser-fact-difficulty">
        <source></source>
        <translation>Schwierigkeit</translation>
    </message>
    <message id="browser-fact-lengthCm">
        <source></source>
        <translation>Körperlänge</translation>
    </message>
    <message id="browser-fact-wingspanCm">
        <source></source>
        <translation>Spannweite</translation>
    </message>
    <message id="browser-fact-heightM">
        <source></source>
        <translation>Höhe</translation>
    </message>
    <message id="browser-fact-heightCm">
        <source></source>
        <translation>Höhe</translation>
    </message>
    <message id="browser-fact-ageYears">
        <source></source>
        <translation>Alter</translation>
    </message>
    <message id="browser-fact-durationS">
        <source></source>
        <translation>Dauer</translation>
    </message>
    <message id="browser-fact-season">
        <source></source>
        <translation>Jahreszeit</translation>
    </message>
    <message id="browser-fact-edition">
        <source></source>
        <translation>Ausgabe</translation>
    </message>
    <message id="browser-fact-year">
        <source></source>
        <translation>Erschienen</translation>
    </message>
    <message id="browser-fact-version">
        <source></source>
        <translation>Fassung</translation>
    </message>
    <message id="browser-fact-license">
        <source></source>
        <translation>Lizenz</translation>
    </message>
</context>
</TS>
