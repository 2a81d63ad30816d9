"""Voices of birds: one package of type sound:bird for each entry.

The sounds are synthesised from the notes given here; nobody went out with a microphone.
"""

from dataclasses import dataclass
from typing import Sequence, Tuple

from model import Issue, Text
from sounds import Note, repeated


@dataclass(frozen=True)
class Recording:
    """One voice. `kind` is the category of sounds that it belongs to."""
    id: str
    kind: str
    title: Text
    colours: Tuple[str, str]
    issue: Issue
    text: Text
    notes: Sequence[Note]
    traits: Tuple[str, ...] = ()
    featured: bool = False


RECORDINGS = (
    Recording("blackbird", "bird-songs", Text("Gesang der Amsel", "Song of the blackbird"),
              ("#33415c", "#e9b44c"), Issue(2019, 3, "2025.2"),
              Text("Flötende, gemächliche Strophen mit einem leisen Zwitschern am Schluss, wie man sie an "
                   "Aprilabenden hört. Jedes Männchen fügt seinen Strophen mit den Jahren neue Motive hinzu.",
                   "Fluted, unhurried phrases with a soft twitter at the end, as heard on evenings in April. "
                   "Each male adds new motifs to his phrases over the years."),
              (Note(0.0, 0.20, 1500, 1750), Note(0.21, 0.14, 2000, 1800), Note(0.36, 0.20, 1650, 2150),
               Note(0.57, 0.12, 1900, 1500), Note(0.71, 0.05, 3200, 3600, 0.4),
               Note(0.77, 0.05, 3500, 2900, 0.4), Note(0.83, 0.06, 3100, 3700, 0.35)), featured=True),
    Recording("robin", "bird-songs", Text("Gesang des Rotkehlchens", "Song of the robin"),
              ("#5a3b52", "#f08a5d"), Issue(2019, 2, "2025.1"),
              Text("Feine, perlende Tonreihen, die hoch ansetzen und dann herabtropfen. Sie sind auch im "
                   "Winter zu hören, wenn kaum ein anderer Vogel singt.",
                   "Fine, trickling runs of notes that start high and then drip downwards. They can be heard "
                   "in winter too, when hardly any other bird is singing."),
              (Note(0.0, 0.10, 3700, 3500, 0.7), *repeated(4, 0.07, Note(0.12, 0.05, 3500, 2900, 0.8)),
               Note(0.42, 0.16, 2400, 3000, 0.8), *repeated(5, 0.055, Note(0.60, 0.04, 3000, 2300, 0.75)),
               Note(0.88, 0.10, 3300, 2600, 0.6))),
    Recording("great-tit", "bird-songs", Text("Gesang der Kohlmeise", "Song of the great tit"),
              ("#2f4d3a", "#f3cf3f"), Issue(2020, 2, "2025.1"),
              Text("Zwei Töne im Wechsel, hell und taktfest wie eine kleine Pumpe. Von Januar an ist diese "
                   "Strophe in Gärten und Parks zu hören.",
                   "Two notes in turn, bright and steady like a little pump. From January on this song can "
                   "be heard in gardens and parks."),
              tuple(note for index in range(4) for note in (Note(index * 0.235, 0.11, 3500, 3450),
                                                            Note(index * 0.235 + 0.115, 0.10, 2600, 2650, 0.8)))),
    Recording("chaffinch", "bird-songs", Text("Schlag des Buchfinken", "Song of the chaffinch"),
              ("#4a4470", "#e79a86"), Issue(2021, 2, "2024.2"),
              Text("Eine beschleunigte, fallende Tonreihe, die in einem Schnörkel endet. Dieses Beispiel "
                   "zeigt den Aufbau der Strophe besonders deutlich.",
                   "A falling run of notes that gathers speed and ends in a flourish. This example shows the "
                   "build of the phrase especially clearly."),
              (*repeated(4, 0.085, Note(0.0, 0.06, 3700, 3100)), *repeated(5, 0.06, Note(0.35, 0.045, 3200, 2500)),
               Note(0.67, 0.08, 2300, 2000), Note(0.76, 0.07, 2100, 3400), Note(0.84, 0.11, 3400, 2100))),
    Recording("wren", "bird-songs", Text("Gesang des Zaunkönigs", "Song of the wren"),
              ("#2f5a4c", "#d9b27c"), Issue(2021, 2, "2025.1"),
              Text("Ein Schmettern aus über hundert Tönen in wenigen Sekunden, mit einem harten Triller in "
                   "der Mitte. Für seine Größe ist der Zaunkönig der lauteste Sänger im Wald.",
                   "A burst of more than a hundred notes within seconds, with a hard trill in the middle. "
                   "For its size the wren is the loudest singer of the forest."),
              (*repeated(4, 0.06, Note(0.0, 0.04, 3000, 3700)), *repeated(12, 0.03, Note(0.26, 0.024, 3500, 2700)),
               *repeated(3, 0.07, Note(0.64, 0.05, 2800, 3800)), *repeated(4, 0.03, Note(0.86, 0.024, 3700, 3000)))),
    Recording("nightingale", "bird-songs", Text("Gesang der Nachtigall", "Song of the nightingale"),
              ("#1f2a55", "#c9a7e0"), Issue(2018, 5, "2026.1"),
              Text("Schluchzende, anschwellende Töne und schnelle Triller, wie sie in Mainächten vom "
                   "Waldrand klingen. Ein Männchen beherrscht bis zu zweihundert verschiedene Strophen.",
                   "Sobbing, swelling notes and rapid trills, as they sound on nights in May at the edge of "
                   "a wood. A male commands up to two hundred different phrases."),
              (Note(0.0, 0.14, 1900, 1950, 0.4), Note(0.15, 0.14, 1900, 1950, 0.65), Note(0.30, 0.16, 1900, 2000),
               *repeated(8, 0.04, Note(0.48, 0.032, 2900, 2100)), Note(0.82, 0.15, 3400, 1500, 0.8)),
              traits=("nocturnal",), featured=True),
    Recording("skylark", "bird-songs", Text("Gesang der Feldlerche", "Song of the skylark"),
              ("#3f7fae", "#f7e3a1"), Issue(2020, 2, "2025.2"),
              Text("Minutenlanges Jubeln hoch über den Feldern, ohne Pause beim Steigen wie beim Sinken. Wo "
                   "viele Brachen liegen, singen im Mai mehrere Lerchen zugleich.",
                   "A jubilant song that lasts for minutes high above the fields, rising and sinking without "
                   "a break. Where much land lies fallow, several larks sing at once in May."),
              tuple(Note(index * 0.058, 0.05, 2500 + 420 * ((index * 5) % 4), 3000 + 300 * ((index * 3) % 3), 0.75)
                    for index in range(16))),
    Recording("cuckoo", "bird-calls", Text("Ruf des Kuckucks", "Call of the cuckoo"),
              ("#3b5f5a", "#b9d8a8"), Issue(2018, 4, "2025.2"),
              Text("Der Vogel ruft seinen eigenen Namen, zwei Töne im Abstand einer Terz. Ende April trifft "
                   "der Kuckuck aus Afrika ein, schon im Juni verstummt er.",
                   "The bird calls its own name, two notes a third apart. The cuckoo arrives from Africa at "
                   "the end of April and falls silent as early as June."),
              (Note(0.05, 0.22, 700, 690), Note(0.42, 0.34, 560, 550)), traits=("migratory",)),
    Recording("crane", "bird-calls", Text("Ruf der Kraniche", "Call of the cranes"),
              ("#6a4f6f", "#f0b79a"), Issue(2019, 3, "2025.2"),
              Text("Das Trompeten ziehender Kraniche ist kilometerweit zu hören. Im Oktober rasten "
                   "Zehntausende von ihnen an den Bodden der Ostsee.",
                   "The trumpeting of migrating cranes carries for kilometres. In October tens of thousands "
                   "of them rest on the lagoons of the Baltic coast."),
              (Note(0.0, 0.36, 820, 1050, 0.8, 24, 0.08), Note(0.44, 0.20, 1050, 900, 0.7, 26, 0.08),
               Note(0.68, 0.28, 900, 1100, 0.8, 22, 0.08)), traits=("migratory",), featured=True),
    Recording("tawny-owl", "bird-calls", Text("Rufe des Waldkauzes", "Hoots of the tawny owl"),
              ("#1d2747", "#c9a36a"), Issue(2019, 3, "2026.1"),
              Text("Ein gezogener Ton, eine Pause, dann ein langes Beben: so markiert das Männchen sein "
                   "Revier. Am häufigsten ist das in stillen Novembernächten zu hören.",
                   "One drawn-out note, a pause, then a long quaver: this is how the male marks his "
                   "territory. It is heard most often on still nights in November."),
              (Note(0.0, 0.30, 760, 720), Note(0.42, 0.10, 700, 690, 0.4), Note(0.54, 0.44, 800, 700, 0.9, 13)),
              traits=("nocturnal",)),
    Recording("kingfisher", "bird-calls", Text("Ruf des Eisvogels", "Call of the kingfisher"),
              ("#164a6b", "#ee8a3c"), Issue(2018, 3, "2025.1"),
              Text("Ein scharfer, durchdringender Pfiff, meist im Flug ausgestoßen. Wer ihn kennt, entdeckt "
                   "Eisvögel an Gewässern, an denen er nie welche vermutet hätte.",
                   "A sharp, piercing whistle, mostly uttered in flight. Those who know it find kingfishers "
                   "on waters where they would never have looked for one."),
              (Note(0.0, 0.16, 3700, 3600), Note(0.24, 0.13, 3800, 3500), Note(0.44, 0.16, 3700, 3600),
               Note(0.68, 0.12, 3800, 3500, 0.7))),
    Recording("buzzard", "bird-calls", Text("Ruf des Mäusebussards", "Call of the common buzzard"),
              ("#5b6f83", "#e9dcc0"), Issue(2020, 2, "2024.2"),
              Text("Ein lang gezogenes, fallendes Miauen aus großer Höhe. Im Vorfrühling kreisen oft mehrere "
                   "Bussarde rufend über demselben Wald.",
                   "A long-drawn, falling mew from high above. In early spring several buzzards often circle "
                   "and call over the same wood."),
              (Note(0.05, 0.80, 2400, 1350, 0.85, 0, 0.12),)),
    Recording("woodpecker", "bird-rattles",
              Text("Trommeln des Buntspechts", "Drumming of the great spotted woodpecker"),
              ("#4b3a2f", "#e0584a"), Issue(2019, 2, "2025.1"),
              Text("Ein kurzer Wirbel von zehn bis fünfzehn Schlägen auf totem Holz, mit dem der Specht sein "
                   "Revier anzeigt. Gesang ist das nicht, aber es erfüllt denselben Zweck.",
                   "A short roll of ten to fifteen blows on dead wood, by which the woodpecker announces its "
                   "territory. It is no song, but it serves the same purpose."),
              tuple(Note(0.08 + index * 0.052 - index * index * 0.0006, 0.045, 420, 380, 0.95 - index * 0.04, 0, 0.75)
                    for index in range(14))),
    Recording("white-stork", "bird-rattles", Text("Klappern des Weißstorchs", "Bill clattering of the white stork"),
              ("#7f3b34", "#f6efe2"), Issue(None, 1, "2025.2"),
              Text("Störche haben kaum eine Stimme; sie begrüßen einander mit lautem Schnabelklappern und "
                   "weit zurückgelegtem Kopf. Am Horst ist das den ganzen Tag über zu hören.",
                   "Storks have hardly any voice; they greet each other by clattering their bills with the "
                   "head thrown far back. At the nest it can be heard all day long."),
              tuple(Note(0.02 + index * 0.062, 0.05, 900, 800, 0.6 + 0.3 * (index % 2), 0, 0.8)
                    for index in range(15)), traits=("migratory",)),
)
