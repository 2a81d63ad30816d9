import QtQuick 2.15
import QtQml 2.15
import Tamsel.Browser 1.0
import "../theme"

// Opens the choice between the languages that there are, and what the system says.
MenuButton {
    id: button

    property var languages: []

    iconName: "globe"
    text: qsTrId("browser-language")

    MenuChoice {
        text: qsTrId("browser-language-system")
        chosen: Session.language === ""
        onTriggered: Session.language = ""
    }

    // By number: a list is another one whenever texts are translated anew, and the choice just made would go.
    Instantiator {
        model: button.languages.length
        delegate: MenuChoice {
            readonly property string code: button.languages[index] || ""

            text: Texts.languageName(code)
            chosen: button.isChosen(code)
            onTriggered: Session.language = code
        }
        onObjectAdded: button.insertChoice(index + 1, object)
        onObjectRemoved: button.removeChoice(object)
    }

    // The texts of a locale that has none of its own are those of its language.
    function isChosen(code) {
        var wanted = Session.language;
        return code === wanted || (languages.indexOf(wanted) < 0 && code === wanted.slice(0, 2));
    }
}
