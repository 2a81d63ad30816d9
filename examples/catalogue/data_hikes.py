"""Hikes: one package of type trail:hiking for each entry."""

from dataclasses import dataclass
from typing import Optional, Sequence, Tuple

from model import Issue, Text
from tracks import Anchor


@dataclass(frozen=True)
class Trail:
    """One trail, on foot or by bicycle, drawn on the map of its region.

    `uses` are packages that add to it and `gear` are things a person should bring; what is listed
    under `must_have` is needed.
    """
    id: str
    region: str
    group: str
    difficulty: str
    title: Text
    scene: Tuple[str, str, str, str]
    issue: Issue
    features: Tuple[str, ...]
    traits: Tuple[str, ...]
    text: Text
    anchors: Sequence[Anchor]
    winding: float = 90
    rolling: float = 12
    uses: Tuple[str, ...] = ()
    gear: Tuple[str, ...] = ()
    must_have: Tuple[str, ...] = ()
    without: Tuple[str, ...] = ()
    featured: bool = False
    licence: str = "attribution"
    hours: Optional[float] = None


HIKES = (
    Trail("hike-allgaeu-ridge", "allgaeu", "ridge-hikes", "hard",
          Text("Höhenweg über dem Oytal", "Ridge path above the Oytal"),
          ("alpine", "day", "hiking", "#c8503c"),
          Issue(2020, 4, "2026.1"), ("summit", "hut", "alp"), ("scenic",),
          Text("Ein luftiger Höhenweg durch steile Blumenhänge, im Sommer der bunteste der Allgäuer Alpen. "
               "Trittsicherheit ist nötig, der Blick reicht bis zu den Gletschern im Süden.",
               "An airy ridge path through steep flowery slopes, the most colourful of the Allgäu Alps in "
               "summer. A sure foot is needed, and the view reaches to the glaciers in the south."),
          ((47.4215, 10.3420, 2224), (47.4230, 10.3720, 2050), (47.3975, 10.3920, 2178), (47.3850, 10.4050, 2007),
           (47.3920, 10.3400, 1006), (47.4050, 10.2850, 820)), 110, 45,
          uses=("flower-edelweiss", "flower-gentian"), featured=True, hours=7.5),
    Trail("hike-karwendel-maples", "karwendel", "valley-walks", "easy",
          Text("Zu den alten Ahornen", "To the ancient maples"),
          ("alpine", "autumn", "resting", "#3f6f9f"),
          Issue(2021, 3, "2025.2"), ("alp", "forest"), ("family-friendly", "circular"),
          Text("Im Oktober leuchten auf dem Talboden über zweitausend Bergahorne vor grauen Kalkwänden. Die "
               "Runde führt über bequeme Wege zu einer Alm, auf der es frischen Käse gibt.",
               "In October more than two thousand sycamore maples glow on the valley floor before grey "
               "limestone walls. The round follows easy tracks to a dairy that serves fresh cheese."),
          ((47.4035, 11.5655, 1216), (47.3935, 11.5625, 1227), (47.3890, 11.5700, 1310), (47.3960, 11.5800, 1502),
           (47.4010, 11.5740, 1340), (47.4035, 11.5655, 1216)), 60,
          uses=("tree-maple",), hours=2.5),
    Trail("hike-koenigssee-viewpoint", "berchtesgaden", "lake-walks", "easy",
          Text("Aussichtsweg am Königssee", "Viewpoint walk on the Königssee"),
          ("lake", "morning", "hiking", "#c8503c"),
          Issue(2019, 4, "2026.1"), ("lake", "forest", "viewpoint"), ("family-friendly", "circular", "scenic"),
          Text("Wie ein Fjord liegt der See zwischen senkrechten Wänden. Der kurze Rundweg erreicht den "
               "Platz, an dem schon vor zwei Jahrhunderten Staffeleien standen, und kehrt durch stillen Wald "
               "zurück.",
               "The lake lies between sheer walls like a fjord. This short round reaches the spot where "
               "easels stood two centuries ago and returns through quiet forest."),
          ((47.5915, 12.9885, 604), (47.5882, 12.9880, 620), (47.5857, 12.9895, 648), (47.5832, 12.9950, 740),
           (47.5876, 12.9942, 690), (47.5915, 12.9885, 604)), 40,
          featured=True, hours=1.5),
    Trail("hike-watzmann-hut", "berchtesgaden", "summit-hikes", "hard",
          Text("Aufstieg unter den Watzmann", "Ascent below the Watzmann"),
          ("alpine", "evening", "resting", "#d98a3f"),
          Issue(2020, 2, "2025.1"), ("hut", "forest", "rock"), ("scenic",),
          Text("Dreizehnhundert Höhenmeter führen aus dem Wald bis zu einer Hütte auf freiem Grat. Der "
               "Gipfel selbst bleibt den Kletterern überlassen, der Sonnenuntergang gehört allen.",
               "Thirteen hundred metres of climbing lead out of the forest to a hut on an open ridge. The "
               "summit itself is left to climbers, but the sunset belongs to everyone."),
          ((47.6020, 12.9310, 625), (47.5965, 12.9380, 850), (47.5900, 12.9400, 1150), (47.5830, 12.9380, 1410),
           (47.5785, 12.9330, 1700), (47.5745, 12.9300, 1930)), 70, 6,
          uses=("bird-golden-eagle",), without=("noun-summit",), hours=4.5),
    Trail("hike-tauern-glacier", "tauern", "ridge-hikes", "hard",
          Text("Gletscherweg in den Hohen Tauern", "Glacier path in the High Tauern"),
          ("alpine", "winter", "hiking", "#2f7fb5"),
          Issue(2021, 3, "2025.2"), ("glacier", "lake", "waterfall"), ("scenic", "circular"),
          Text("Von einem Almdorf geht es zum Rand des ewigen Eises und an einem Bergsee mit Wollgras vorbei "
               "zurück. Tafeln zeigen, wie weit der Gletscher in jedem Jahrzehnt reichte.",
               "From a village of alpine huts the path climbs to the edge of the ice and returns past a "
               "mountain lake with cotton grass. Boards show how far the glacier reached in each decade."),
          ((47.1190, 12.4550, 1689), (47.1160, 12.4420, 1880), (47.1120, 12.4350, 2138), (47.1110, 12.4280, 2204),
           (47.1080, 12.4200, 2240), (47.1150, 12.4260, 1950), (47.1190, 12.4550, 1689)), 70, 25,
          must_have=("crampons",), licence="personal", hours=5.5),
    Trail("hike-engadine-larches", "engadine", "lake-walks", "easy",
          Text("Lärchenweg am Silsersee", "Larch path by Lake Sils"),
          ("lake", "autumn", "hiking", "#3f8f5f"),
          Issue(2019, 5, "2026.1"), ("lake", "forest", "village"), ("scenic", "quiet"),
          Text("Ende September färben sich die Lärchen am Ufer golden und spiegeln sich im blauen Wasser. "
               "Der Weg ist fast eben und führt an Halbinseln vorbei bis zum Ende des Hochtals.",
               "At the end of September the larches on the shore turn to gold and are mirrored in blue "
               "water. The path is almost level and leads past peninsulas to the end of the high valley."),
          ((46.4297, 9.7605, 1800), (46.4250, 9.7480, 1812), (46.4180, 9.7390, 1806), (46.4130, 9.7300, 1810),
           (46.4085, 9.7110, 1822), (46.4040, 9.6950, 1815)), 80, 14,
          uses=("tree-larch", "tree-stone-pine"), featured=True, hours=2.0),
    Trail("hike-black-forest-gorge", "black-forest", "gorge-walks", "medium",
          Text("Durch die Wutachschlucht", "Through the Wutach gorge"),
          ("gorge", "day", "resting", "#c8503c"),
          Issue(2018, 6, "2026.1"), ("gorge", "river", "waterfall", "forest"), ("shady",),
          Text("Stege und Felspfade begleiten den wilden Fluss durch eine Schlucht, in der sich das Gestein "
               "auf jedem Kilometer ändert. Nach Regen sind die Wege glatt und manche Abschnitte gesperrt.",
               "Footbridges and rocky paths follow the wild river through a gorge whose stone changes with "
               "every kilometre. After rain the paths are slippery and some sections are closed."),
          ((47.8460, 8.3170, 660), (47.8462, 8.3350, 642), (47.8420, 8.3520, 622), (47.8390, 8.3750, 604),
           (47.8372, 8.3910, 592), (47.8350, 8.4050, 580)), 120, 28,
          uses=("bird-kingfisher", "sound-wren"), featured=True, hours=4.5),
    Trail("hike-harz-summit", "harz", "summit-hikes", "medium",
          Text("Auf den Brocken", "Up the Brocken"),
          ("uplands", "morning", "hiking", "#c8503c"),
          Issue(2020, 3, "2025.1"), ("summit", "forest", "moor"), ("circular", "scenic"),
          Text("Der steinige Pfad folgt einem Bach durch Wald, der sich selbst überlassen ist, und tritt "
               "erst kurz vor dem Gipfel ins Freie. Oben weht fast immer Wind, an klaren Tagen sieht man "
               "zweihundert Kilometer weit.",
               "The stony path follows a stream through forest left to itself and comes out into the open "
               "only just below the summit. There is nearly always a wind up there, and on clear days the "
               "view reaches two hundred kilometres."),
          ((51.7650, 10.6550, 620), (51.7730, 10.6470, 740), (51.7810, 10.6400, 870), (51.7992, 10.6156, 1141),
           (51.7900, 10.6010, 980), (51.7750, 10.6230, 820), (51.7650, 10.6550, 620)), 130, 18,
          uses=("tree-spruce",), hours=5.5),
    Trail("hike-saxon-rocks", "saxon-switzerland", "gorge-walks", "medium",
          Text("Zur Brücke in den Felsen", "To the bridge among the rocks"),
          ("sandstone", "morning", "hiking", "#c8503c"),
          Issue(2019, 5, "2026.1"), ("rock", "viewpoint", "gorge"), ("circular", "scenic"),
          Text("Durch eine enge Schlucht mit siebenhundert Stufen geht es hinauf zur steinernen Brücke "
               "zwischen den Felstürmen. Wer früh aufbricht, hat die Aussicht über die Elbe für sich allein.",
               "A narrow ravine with seven hundred steps leads up to the stone bridge among the rock towers. "
               "Those who start early have the view over the Elbe to themselves."),
          ((50.9590, 14.0800, 118), (50.9640, 14.0830, 135), (50.9690, 14.0790, 232), (50.9660, 14.0740, 290),
           (50.9622, 14.0733, 305), (50.9600, 14.0770, 190), (50.9590, 14.0800, 118)), 40,
          uses=("tree-pine",), featured=True, hours=3.0),
    Trail("hike-bavarian-forest-summit", "bavarian-forest", "summit-hikes", "medium",
          Text("Auf den Lusen", "Up the Lusen"),
          ("uplands", "autumn", "resting", "#8f4f3f"),
          Issue(2022, 2, "2025.1"), ("summit", "forest", "stream"), ("circular",),
          Text("Ein Meer aus Granitblöcken krönt diesen Gipfel mitten im Nationalpark. Der Anstieg zeigt, "
               "wie aus totem Holz in wenigen Jahrzehnten ein neuer, wilder Wald geworden ist.",
               "A sea of granite blocks crowns this summit in the middle of the national park. The climb "
               "shows how dead wood has turned into a new, wild forest within a few decades."),
          ((48.9280, 13.4650, 950), (48.9310, 13.4780, 1010), (48.9350, 13.4860, 1075), (48.9397, 13.5064, 1373),
           (48.9330, 13.4990, 1250), (48.9280, 13.4820, 1060), (48.9280, 13.4650, 950)), 100,
          uses=("bird-woodpecker",), hours=4.0),
    Trail("hike-eifel-maars", "eifel", "lake-walks", "easy",
          Text("Rund um drei Maare", "Round three crater lakes"),
          ("lakeland", "day", "hiking", "#c8503c"),
          Issue(2021, 2, "2025.2"), ("lake", "viewpoint", "meadow"), ("circular", "family-friendly"),
          Text("Drei fast kreisrunde Seen liegen in den Kratern junger Vulkane. Vom Turm auf dem Rücken "
               "dazwischen sind alle drei auf einmal zu sehen.",
               "Three almost circular lakes lie in the craters of young volcanoes. From the tower on the "
               "ridge between them all three can be seen at once."),
          ((50.1780, 6.8370, 412), (50.1752, 6.8447, 545), (50.1765, 6.8510, 488), (50.1695, 6.8580, 424),
           (50.1668, 6.8510, 460), (50.1725, 6.8400, 480), (50.1780, 6.8370, 412)), 80,
          uses=("bird-grey-heron",), hours=2.5),
    Trail("hike-ruegen-cliffs", "ruegen", "coast-walks", "medium",
          Text("Hochuferweg an der Kreideküste", "Clifftop path on the chalk coast"),
          ("cliffs", "day", "resting", "#c8503c"),
          Issue(2018, 7, "2026.1"), ("beach", "forest", "viewpoint"), ("scenic", "shady"),
          Text("Alte Buchen stehen hier bis an die Kante weißer Klippen, unter denen das Meer türkis "
               "schimmert. Der Pfad steigt und fällt mit jedem Bachtal und bleibt wegen der Abbrüche ein "
               "Stück im Wald.",
               "Old beeches grow here right to the edge of white cliffs, below which the sea shimmers "
               "turquoise. The path rises and falls with every valley and keeps a little way into the wood "
               "because of rockfalls."),
          ((54.5200, 13.6500, 22), (54.5300, 13.6620, 75), (54.5410, 13.6740, 88), (54.5550, 13.6700, 102),
           (54.5650, 13.6660, 110), (54.5735, 13.6630, 118)), 110, 26,
          uses=("tree-beech",), featured=True, hours=3.5),
    Trail("hike-heath-hill", "lueneburg-heath", "heath-walks", "easy",
          Text("Durch die blühende Heide", "Across the heath in bloom"),
          ("heath", "day", "hiking", "#8f4f9f"),
          Issue(2020, 3, "2025.2"), ("heath", "village", "viewpoint"), ("circular", "family-friendly", "quiet"),
          Text("Im August ist diese Runde über den höchsten Hügel der Heide am schönsten. Unterwegs begegnen "
               "Schafherden, Wacholder und ein Dorf ohne Autos.",
               "This round over the highest hill of the heath is at its best in August. Flocks of sheep, "
               "junipers and a village without cars lie on the way."),
          ((53.1930, 9.9770, 76), (53.1790, 9.9650, 105), (53.1665, 9.9560, 112), (53.1670, 9.9395, 169),
           (53.1540, 9.9610, 82), (53.1720, 9.9780, 98), (53.1930, 9.9770, 76)), 140, 9,
          uses=("flower-heather",), hours=4.0),
    Trail("hike-spreewald-boardwalk", "spreewald", "heath-walks", "easy",
          Text("Auf Stegen durch den Spreewald", "On boardwalks through the Spreewald"),
          ("moor", "morning", "resting", "#3f7f9f"),
          Issue(2022, 2, "2025.1"), ("stream", "moor", "village"), ("quiet", "step-free"),
          Text("Holzstege und kleine Brücken führen von Insel zu Insel, während Kähne lautlos "
               "vorübergleiten. Im Frühjahr rufen überall Kuckucke, im Sommer schwirren blaue Libellen über "
               "die Fließe.",
               "Boardwalks and small bridges lead from island to island while punts glide by without a "
               "sound. In spring cuckoos call from all sides, and in summer blue damselflies hover over the "
               "channels."),
          ((51.8650, 13.9670, 50), (51.8668, 13.9780, 51), (51.8660, 13.9900, 50), (51.8628, 14.0150, 51),
           (51.8600, 14.0400, 50)), 150, 0,
          uses=("sound-cuckoo", "tree-alder"), gear=("binoculars",), hours=2.0),
    Trail("hike-wadden-flats", "wadden-sea", "coast-walks", "medium",
          Text("Über das Watt zur Hallig", "Across the flats to the islet"),
          ("dunes", "evening", "hiking", "#c8503c"),
          Issue(None, 1, "2025.2"), ("beach", "island"), ("scenic",),
          Text("Bei Niedrigwasser wird der Meeresboden für wenige Stunden zum Wanderweg. Diese Strecke darf "
               "nur mit einer ortskundigen Führung und nach dem Gezeitenkalender begangen werden.",
               "At low water the sea bed becomes a path for a few hours. This route may be walked only with "
               "a local guide and by the tide table."),
          ((54.7250, 8.6900, 2), (54.7140, 8.6910, 1), (54.7030, 8.6960, 0), (54.6900, 8.7010, 0),
           (54.6760, 8.7040, 2)), 120, 0,
          gear=("binoculars",), must_have=("tide-table",)),
    Trail("hike-constance-blossom", "lake-constance", "lake-walks", "easy",
          Text("Blütenweg über dem Bodensee", "Blossom walk above Lake Constance"),
          ("vineyards", "morning", "resting", "#d98a9f"),
          Issue(2021, 2, "2025.1"), ("lake", "vineyard", "viewpoint"), ("family-friendly", "scenic"),
          Text("Ende April stehen die Obstwiesen in Blüte, und hinter dem See glänzen die verschneiten "
               "Alpen. Bänke unter alten Kirschbäumen laden zu langen Pausen ein.",
               "At the end of April the orchards are in bloom, and beyond the lake the snowy Alps shine. "
               "Benches under old cherry trees invite long rests."),
          ((47.7670, 9.1600, 402), (47.7725, 9.1480, 455), (47.7760, 9.1330, 498), (47.7850, 9.1170, 520),
           (47.7970, 9.1000, 412)), 110,
          uses=("tree-cherry",), hours=2.5),
)
