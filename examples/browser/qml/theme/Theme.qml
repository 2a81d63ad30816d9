pragma Singleton

import QtQuick 2.15
import Tamsel.Browser 1.0

// Colours, sizes and times of the user interface. Every pair of text and ground has a contrast of 4.5 or more
// in both variants, every outline of a control 3 or more.
QtObject {
    id: theme

    readonly property SystemPalette systemPalette: SystemPalette {}
    readonly property bool systemIsDark: systemPalette.window.hslLightness < 0.5
    readonly property bool dark: Session.theme === "dark" || (Session.theme === "system" && systemIsDark)

    // Whether the user interface runs from right to left, as the chosen language or Qt's option -reverse says.
    readonly property bool reversed: Qt.application.layoutDirection === Qt.RightToLeft
                                     || (Session.language !== ""
                                         && Qt.locale(Session.language).textDirection === Qt.RightToLeft)

    readonly property color page: dark ? "#111714" : "#f3f6f2"
    readonly property color surface: dark ? "#1a221e" : "#ffffff"
    readonly property color raised: dark ? "#232d28" : "#ffffff"
    readonly property color sunken: dark ? "#0c110e" : "#e7ede7"
    readonly property color hover: dark ? "#26312b" : "#eaf1eb"
    readonly property color pressed: dark ? "#2e3b34" : "#dde8df"
    readonly property color line: dark ? "#303c35" : "#d6dfd7"
    readonly property color outline: dark ? "#74857b" : "#7f8d84"
    readonly property color text: dark ? "#e8eeea" : "#18211c"
    readonly property color dim: dark ? "#a5b3aa" : "#525f57"
    readonly property color accent: dark ? "#7fd3a3" : "#1c6b47"
    readonly property color accentHover: dark ? "#96dfb5" : "#165a3b"
    readonly property color accentInk: dark ? "#08190f" : "#ffffff"
    readonly property color accentSoft: dark ? "#1f3a2c" : "#dcefe3"
    readonly property color accentSoftInk: dark ? "#b4ecc9" : "#114a30"
    readonly property color warning: dark ? "#f0c36a" : "#7d5200"
    readonly property color warningSoft: dark ? "#3a2f18" : "#fdf0d3"
    readonly property color focus: dark ? "#9cc7ff" : "#0b57d0"
    readonly property color shade: dark ? "#b3000000" : "#66142019"
    readonly property color star: "#ffc73a"

    // Follows the font that the system is set to, but never falls below what is easy to read.
    readonly property int body: Math.max(14, Qt.application.font.pixelSize)
    readonly property int small: Math.round(body * 0.87)
    readonly property int large: Math.round(body * 1.3)
    readonly property int huge: Math.round(body * 1.85)

    readonly property int gap: 8
    readonly property int margin: 16
    readonly property int radius: 8
    readonly property int controlHeight: Math.round(body * 2.6)
    readonly property int iconSize: Math.round(body * 1.4)
    readonly property int largePicture: 800
    readonly property int narrowWidth: 820
    readonly property int moveTime: Session.animated ? 140 : 0
}
