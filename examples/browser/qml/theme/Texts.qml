pragma Singleton

import QtQml 2.15
import Tamsel.PackageManager 1.0

// Words for what comes from catalogues: types, keys of manifests, values. What no translation knows is shown
// in a readable form of its own name.
QtObject {
    id: texts

    readonly property var units: ({ "Km": "km", "M": "m", "Cm": "cm", "S": "s", "Kg": "kg" })

    function known(id) {
        var text = qsTrId(id);
        return text === id ? "" : text;
    }

    function readable(name) {
        var words = name.replace(/([a-z0-9])([A-Z])/g, "$1 $2").replace(/[-_:]+/g, " ").trim().toLowerCase();
        return words.charAt(0).toUpperCase() + words.slice(1);
    }

    function typeName(type) {
        if (type === "")
            return qsTrId("browser-type-none");
        return known("browser-type-" + type.replace(/:/g, "-")) || readable(type.split(":").pop());
    }

    function factName(key) {
        return known("browser-fact-" + key) || readable(key.replace(/([a-z])(Km|Cm|Kg|M|S)$/, "$1"));
    }

    // As those call it who speak it.
    function languageName(code) {
        return Qt.locale(code === "en" ? "en_001" : code).nativeLanguageName || code;
    }

    function rounded(value, decimals) {
        return Number(value).toLocaleString(Qt.locale(), "f", decimals);
    }

    function number(value) {
        return rounded(value, Number.isInteger(value) ? 0 : 1);
    }

    function season(months) {
        if (months[0] === 1 && months[1] === 12)
            return qsTrId("browser-season-all-year");
        var from = Qt.locale().standaloneMonthName(months[0] - 1);
        var to = Qt.locale().standaloneMonthName(months[1] - 1);
        return from === to ? from : qsTrId("browser-season-range").arg(from).arg(to);
    }

    function factValue(key, value) {
        if (key === "season")
            return season(value);
        if (typeof value === "boolean")
            return value ? qsTrId("browser-yes") : qsTrId("browser-no");
        if (typeof value === "number")
            return numericFact(key, value);
        return Array.isArray(value) ? value.join(", ") : String(value);
    }

    function numericFact(key, value) {
        if (key === "year" || key === "version")
            return String(value);
        if (key === "hours")
            return qsTrId("browser-hours").arg(number(value));
        if (key === "ageYears")
            return qsTrId("browser-years", value);
        var unit = units[(key.match(/[a-z](Km|Cm|Kg|M|S)$/) || [])[1]];
        return unit ? number(value) + "\u00a0" + unit : number(value);
    }

    function fileSize(bytes) {
        if (bytes < 1000)
            return qsTrId("browser-size-bytes", bytes);
        if (bytes < 1000000)
            return qsTrId("browser-size-kilobytes").arg(rounded(bytes / 1000, 0));
        return qsTrId("browser-size-megabytes").arg(rounded(bytes / 1000000, 1));
    }

    function statusName(status) {
        switch (status) {
        case PackageReference.Installed:
            return qsTrId("browser-status-installed");
        case PackageReference.Installing:
            return qsTrId("browser-status-installing");
        case PackageReference.Incomplete:
            return qsTrId("browser-status-incomplete");
        case PackageReference.Unavailable:
            return qsTrId("browser-status-unavailable");
        default:
            return qsTrId("browser-status-unopened");
        }
    }

    function statusIcon(status) {
        switch (status) {
        case PackageReference.Installed:
            return "check";
        case PackageReference.Installing:
            return "download";
        case PackageReference.Incomplete:
            return "warning";
        case PackageReference.Unavailable:
            return "unavailable";
        default:
            return "";
        }
    }
}
