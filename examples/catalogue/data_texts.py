"""Texts that belong to no single species, map or trail, and the language packs themselves."""

from dataclasses import dataclass
from typing import Tuple

from model import Issue, Text

# Values of manifest keys that are shown to people, by the id they have in a manifest.
SHARED_TEXTS = {
    "difficulty-easy": Text("Leicht", "Easy"),
    "difficulty-medium": Text("Mittel", "Moderate"),
    "difficulty-hard": Text("Schwer", "Hard"),
    "license-attribution": Text("Frei mit Nennung der Quelle", "Free with credit to the source"),
    "license-public": Text("Gemeinfrei", "Public domain"),
    "license-personal": Text("Nur für den eigenen Gebrauch", "For personal use only"),
}

MONTHS = (
    Text("Januar", "January"), Text("Februar", "February"), Text("März", "March"), Text("April", "April"),
    Text("Mai", "May"), Text("Juni", "June"), Text("Juli", "July"), Text("August", "August"),
    Text("September", "September"), Text("Oktober", "October"), Text("November", "November"),
    Text("Dezember", "December"),
)

# Labels on the pages of the guides.
LABELS = {
    "length": Text("Länge", "Length"),
    "wingspan": Text("Spannweite", "Wingspan"),
    "height": Text("Höhe", "Height"),
    "age": Text("Alter", "Age"),
    "years": Text("bis {} Jahre", "up to {} years"),
    "seen": Text("Zu sehen", "Seen"),
    "blooms": Text("Blüte", "In flower"),
    "all-year": Text("das ganze Jahr", "all year"),
    "habitats": Text("Lebensraum", "Habitat"),
    "tip": Text("Gut zu wissen", "Good to know"),
}


@dataclass(frozen=True)
class LanguagePack:
    """A package with compiled texts. `files` maps the language of a locale to a file name."""
    id: str
    language: str
    title: Text
    text: Text
    issue: Issue
    files: Tuple[Tuple[str, str], ...]
    colours: Tuple[str, str, str]


# For each locale the loader of translations takes the file for that language from *every* package
# of type translation, and the one for "en" only where there is none. Were English to offer nothing
# for German, a German application would load both languages, and whichever came last would win.
# The English pack therefore names a file without any texts for German, and stays silent there.
LANGUAGE_PACKS = (
    LanguagePack("texts-german", "german", Text("Deutsche Texte", "German texts"),
                 Text("Alle Titel und Beschreibungen des Katalogs auf Deutsch, dazu die Texte der "
                      "Bedienoberfläche. Das Paket wirkt, sobald es installiert ist, ohne Neustart der "
                      "Anwendung.",
                      "All titles and descriptions of the catalogue in German, along with the texts of the "
                      "user interface. The package takes effect as soon as it is installed, without "
                      "restarting the application."),
                 Issue(2018, 9, "2026.1"), (("de", "texts_de.qm"),), ("#2f4858", "#f2b84b", "#d9574a")),
    LanguagePack("texts-english", "english", Text("Englische Texte", "English texts"),
                 Text("Alle Titel und Beschreibungen des Katalogs auf Englisch, dazu die Texte der "
                      "Bedienoberfläche. Sie werden für jede Sprache angezeigt, zu der es kein eigenes Paket "
                      "gibt.",
                      "All titles and descriptions of the catalogue in English, along with the texts of the "
                      "user interface. They are shown for every language that has no package of its own."),
                 Issue(2018, 9, "2026.1"), (("en", "texts_en.qm"), ("de", "silent.qm")),
                 ("#274060", "#7fc8c0", "#e07a5f")),
)
