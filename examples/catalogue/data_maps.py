"""Maps: overview maps (map:base) and the hiking maps of the regions that lie on them (map:region)."""

from dataclasses import dataclass
from typing import Tuple

from model import Issue, Text
from picture_maps import MapLook


@dataclass(frozen=True)
class BaseMap:
    """An overview of a large area. Region maps are drawn on top of one."""
    id: str
    title: Text
    scale: str
    look: MapLook
    issue: Issue
    names: Tuple[str, ...]
    landscapes: Tuple[str, ...]
    text: Text
    pictured: bool = True


@dataclass(frozen=True)
class RegionMap:
    """A hiking map. Its names and landscapes hold for every trail in the region as well."""
    id: str
    base: str
    title: Text
    scale: str
    look: MapLook
    issue: Issue
    names: Tuple[str, ...]
    landscapes: Tuple[str, ...]
    features: Tuple[str, ...]
    size_km: int
    text: Text
    featured: bool = False
    pictured: bool = True


ALPINE = ("high-mountains", "mountains", "landscapes")
UPLANDS = ("uplands", "mountains", "landscapes")
COAST = ("coasts", "landscapes")
LOWLAND = ("lowlands", "landscapes")
LAKES = ("lakelands", "lowlands", "landscapes")
HEATH = ("heaths", "lowlands", "landscapes")

BASE_MAPS = (
    BaseMap("alps", Text("Übersichtskarte Alpen", "Overview map of the Alps"), "1:500 000",
            MapLook("ridges", "alpine", ("#2f5f7f", "#7fb0b5"), True), Issue(2018, 8, "2026.1"),
            ("alps",), ALPINE,
            Text("Die ganze Alpenkette von den Seealpen bis zum Wienerwald mit Pässen, Tälern und den "
                 "wichtigsten Gipfeln. Alle Gebietskarten der Alpen bauen auf dieser Karte auf.",
                 "The whole chain of the Alps from the sea in the west to the hills of Vienna, with passes, "
                 "valleys and the main summits. All regional maps of the Alps are built upon this map.")),
    BaseMap("uplands", Text("Übersichtskarte Mittelgebirge", "Overview map of the uplands"), "1:500 000",
            MapLook("domes", "uplands", ("#5f4a3a", "#c9a97f"), True), Issue(2018, 6, "2026.1"),
            ("germany",), UPLANDS,
            Text("Vom Schwarzwald bis zum Harz: alle deutschen Mittelgebirge auf einem Blatt, mit Wäldern, "
                 "Flüssen und Fernwegen. Die Karte ist Grundlage der Wanderkarten dieser Landschaften.",
                 "From the Black Forest to the Harz: all German uplands on one sheet, with forests, rivers "
                 "and long-distance paths. It is the foundation of the hiking maps of these landscapes.")),
    BaseMap("coast", Text("Übersichtskarte Nord- und Ostsee", "Overview map of the North Sea and Baltic coasts"),
            "1:400 000", MapLook("coast", "coast", ("#1f6f8f", "#7fc7d3"), True), Issue(2019, 5, "2025.2"),
            ("north-sea", "baltic", "germany"), COAST,
            Text("Küsten, Inseln und Bodden von Ostfriesland bis Usedom, dazu Leuchttürme, Fähren und "
                 "Vogelschutzgebiete. Die Gezeiten der Nordsee sind als Flächen eingetragen.",
                 "Coasts, islands and lagoons from East Frisia to Usedom, along with lighthouses, ferries "
                 "and bird reserves. The tidal flats of the North Sea are shown as areas.")),
    BaseMap("lowland", Text("Übersichtskarte Norddeutsches Tiefland", "Overview map of the North German lowlands"),
            "1:400 000", MapLook("plain", "lowland", ("#a8742f", "#ecc98a"), True), Issue(2019, 4, "2025.1"),
            ("germany",), LOWLAND,
            Text("Heide, Moor und Seenland zwischen Ems und Oder. Die Karte zeigt neben Straßen und Orten "
                 "auch die Spuren der Eiszeit, die diese Ebenen geformt hat.",
                 "Heath, bog and lakeland between the Ems and the Oder. Besides roads and towns the map "
                 "shows the traces of the ice age that shaped these plains."),
            pictured=False),
)

REGION_MAPS = (
    RegionMap("allgaeu", "alps", Text("Wanderkarte Allgäuer Alpen", "Hiking map of the Allgäu Alps"), "1:25 000",
              MapLook("ridges", "alpine", ("#3f6fa5", "#86b5d6")), Issue(2019, 5, "2026.1"),
              ("allgaeu", "alps", "germany"), ALPINE, ("summit", "hut", "alp"), 34,
              Text("Grasberge, Hochtäler und schroffe Grate zwischen Iller und Lech. Eingetragen sind alle "
                   "bezeichneten Steige mit Gehzeiten, Hütten und die Sennalpen, auf denen man einkehren "
                   "kann.",
                   "Grassy peaks, high valleys and rugged ridges between the Iller and the Lech. All marked "
                   "paths are shown with walking times, huts and the dairies that "
                   "serve guests.")),
    RegionMap("karwendel", "alps", Text("Wanderkarte Karwendel", "Hiking map of the Karwendel"), "1:25 000",
              MapLook("ridges", "alpine", ("#4a5f8f", "#a3b5d9")), Issue(2020, 4, "2025.2"),
              ("karwendel", "alps", "austria"), ALPINE, ("summit", "alp", "rock"), 36,
              Text("Vier lange Kalkketten mit einsamen Tälern dazwischen, in denen uralte Ahorne stehen. Die "
                   "Karte reicht vom Inntal bis an die Quellen der Isar.",
                   "Four long limestone chains with lonely valleys between them, where ancient maples stand. "
                   "The map reaches from the valley of the Inn to the springs of the Isar.")),
    RegionMap("berchtesgaden", "alps",
              Text("Wanderkarte Berchtesgadener Alpen", "Hiking map of the Berchtesgaden Alps"),
              "1:25 000", MapLook("great-lake", "alpine", ("#2f6f6f", "#8fc9bf")), Issue(2019, 6, "2026.1"),
              ("berchtesgaden", "watzmann", "alps", "germany"), ALPINE, ("summit", "lake", "hut"), 28,
              Text("Der Nationalpark rund um Königssee und Watzmann in großem Maßstab. Wildruhezonen, "
                   "Schutzhütten und die Anlegestellen der Boote sind besonders hervorgehoben.",
                   "The national park around the Königssee and the Watzmann on a large scale. Quiet zones "
                   "for wildlife, huts and the landing stages of the boats are "
                   "specially marked."), featured=True),
    RegionMap("tauern", "alps", Text("Wanderkarte Hohe Tauern", "Hiking map of the High Tauern"), "1:50 000",
              MapLook("ridges", "alpine", ("#5a6f8a", "#bfd3e3")), Issue(2021, 3, "2025.2"),
              ("tauern", "alps", "austria"), ALPINE, ("summit", "glacier", "hut"), 60,
              Text("Österreichs höchste Berge mit ihren Gletschern und Wasserfällen. Der Rand der Gletscher "
                   "ist mit Jahreszahlen versehen, so lässt sich ihr Rückzug verfolgen.",
                   "Austria's highest mountains with their glaciers and waterfalls. The edges of the "
                   "glaciers carry dates, so that their retreat can be traced.")),
    RegionMap("engadine", "alps", Text("Wanderkarte Engadin", "Hiking map of the Engadine"), "1:50 000",
              MapLook("lakes", "alpine", ("#8f5f3f", "#e3c08f")), Issue(2020, 4, "2026.1"),
              ("engadine", "alps", "switzerland"), ALPINE, ("lake", "forest", "alp"), 55,
              Text("Ein Hochtal voller Seen, Lärchenwälder und weiter Blicke. Die Karte verzeichnet auch "
                   "Schneeschuhwege und die Winterwanderwege über die zugefrorenen Seen.",
                   "A high valley full of lakes, larch woods and wide views. The map also shows snowshoe "
                   "routes and the winter paths across the frozen lakes.")),
    RegionMap("lake-constance", "alps", Text("Wanderkarte Bodensee", "Hiking map of Lake Constance"), "1:50 000",
              MapLook("great-lake", "uplands", ("#2f6f9f", "#9fc9e6")), Issue(2019, 5, "2025.2"),
              ("lake-constance", "germany", "austria", "switzerland"), ("lakelands", "landscapes"),
              ("lake", "vineyard", "village"), 70,
              Text("Drei Länder an einem Ufer, mit Obstgärten, Weinbergen und alten Städten. Rad- und "
                   "Fußwege sind getrennt dargestellt, ebenso Badeplätze und Schilfgebiete.",
                   "Three countries on one shore, with orchards, vineyards and old towns. Cycle tracks and "
                   "footpaths are shown separately, as are bathing places and reed beds.")),
    RegionMap("black-forest", "uplands", Text("Wanderkarte Schwarzwald", "Hiking map of the Black Forest"), "1:50 000",
              MapLook("domes", "uplands", ("#1f4f3f", "#7fb58f")), Issue(2018, 7, "2026.1"),
              ("black-forest", "germany"), UPLANDS, ("forest", "gorge", "summit"), 75,
              Text("Dunkle Tannenwälder, tiefe Schluchten und Höhen mit Fernsicht bis zu den Alpen. Alle "
                   "Höhenwege sind mit ihren Zeichen eingetragen.",
                   "Dark fir forests, deep gorges and heights with a view as far as the Alps. All ridgeway "
                   "paths are shown with their waymarks."), featured=True),
    RegionMap("harz", "uplands", Text("Wanderkarte Harz", "Hiking map of the Harz"), "1:50 000",
              MapLook("domes", "uplands", ("#3f7f5f", "#a3cf8f")), Issue(2020, 3, "2025.1"),
              ("harz", "germany"), UPLANDS, ("forest", "summit", "moor"), 55,
              Text("Das nördlichste Mittelgebirge mit Mooren, Felsklippen und alten Bergwerksteichen. Die "
                   "Karte unterscheidet Wald, der wieder Wildnis wird, von bewirtschaftetem Forst.",
                   "The northernmost uplands with bogs, crags and old mining ponds. The map distinguishes "
                   "woodland that is returning to wilderness from managed forest.")),
    RegionMap("saxon-switzerland", "uplands",
              Text("Wanderkarte Sächsische Schweiz", "Hiking map of Saxon Switzerland"),
              "1:25 000", MapLook("domes", "uplands", ("#7f5f3f", "#d9b98a")), Issue(2019, 5, "2026.1"),
              ("saxon-switzerland", "elbe", "germany"), UPLANDS, ("rock", "gorge", "viewpoint"), 30,
              Text("Tafelberge, Felsnadeln und enge Gründe zu beiden Seiten der Elbe. Stiegen und Leitern "
                   "sind nach Schwierigkeit gekennzeichnet.",
                   "Table mountains, rock needles and narrow ravines on both sides of the Elbe. Stairways "
                   "and ladders are marked according to their difficulty."), featured=True),
    RegionMap("bavarian-forest", "uplands", Text("Wanderkarte Bayerischer Wald", "Hiking map of the Bavarian Forest"),
              "1:50 000", MapLook("domes", "uplands", ("#2f5f4f", "#9fc9a3")), Issue(2021, 2, "2025.1"),
              ("bavarian-forest", "germany"), UPLANDS, ("forest", "summit", "moor"), 60,
              Text("Das größte Waldgebiet Mitteleuropas, in dem Luchse leben und Bäume umfallen dürfen. "
                   "Verzeichnet sind auch Schutzzonen, die nur zeitweise betreten werden dürfen.",
                   "The largest forest of central Europe, where lynxes live and trees are allowed to fall. "
                   "Zones that are closed for part of the year are shown as well.")),
    RegionMap("eifel", "uplands", Text("Wanderkarte Vulkaneifel", "Hiking map of the Volcanic Eifel"), "1:25 000",
              MapLook("lakes", "uplands", ("#5f3f3f", "#c99f8f")), Issue(2022, 2, "2025.1"),
              ("eifel", "germany"), UPLANDS, ("lake", "castle", "forest"), 30,
              Text("Kreisrunde Maare, erloschene Vulkane und sprudelnde Quellen. Lavafelder und Aufschlüsse "
                   "sind mit kurzen Erläuterungen versehen.",
                   "Circular crater lakes, extinct volcanoes and bubbling springs. Lava fields and outcrops "
                   "come with short explanations.")),
    RegionMap("moselle", "uplands", Text("Wanderkarte Moseltal", "Hiking map of the Moselle valley"), "1:50 000",
              MapLook("domes", "coast", ("#6f2f4f", "#d39fa9")), Issue(None, 1, "2025.2"),
              ("moselle", "germany"), ("river-valleys", "landscapes"), ("river", "vineyard", "castle"), 65,
              Text("Der Fluss in seinen Schleifen, dazu Steillagen, Burgen und Fachwerkorte. Klettersteige "
                   "durch die Weinberge und der Radweg am Ufer haben eigene Zeichen.",
                   "The river in its loops, along with steep vineyards, castles and half-timbered villages. "
                   "Climbing paths through the vines and the cycle track on the bank have their "
                   "own symbols."), pictured=False),
    RegionMap("ruegen", "coast", Text("Wanderkarte Rügen", "Hiking map of Rügen"), "1:50 000",
              MapLook("coast", "coast", ("#1f7f9f", "#8fd3df")), Issue(2020, 4, "2026.1"),
              ("ruegen", "baltic", "germany"), COAST, ("beach", "forest", "lighthouse"), 50,
              Text("Kreidefelsen, Buchenwälder und Bodden auf der größten deutschen Insel. Steile Abgänge "
                   "zum Strand und gesperrte Abschnitte der Küste sind deutlich markiert.",
                   "Chalk cliffs, beech woods and lagoons on the largest German island. Steep descents to "
                   "the beach and closed sections of the coast are clearly marked.")),
    RegionMap("wadden-sea", "coast", Text("Wanderkarte Wattenmeer", "Hiking map of the Wadden Sea"), "1:50 000",
              MapLook("coast", "coast", ("#6f7f5f", "#d3d9a9")), Issue(2021, 3, "2025.2"),
              ("wadden-sea", "north-sea", "germany"), COAST, ("beach", "island", "lighthouse"), 60,
              Text("Watt, Priele und Halligen der Nordfriesischen Küste. Wattwege sind mit den Zeiten "
                   "versehen, zu denen sie bei Niedrigwasser begangen werden können.",
                   "Tidal flats, channels and islets of the North Frisian coast. Paths across the flats give "
                   "the times at which they can be walked at low water.")),
    RegionMap("lueneburg-heath", "lowland", Text("Wanderkarte Lüneburger Heide", "Hiking map of the Lüneburg Heath"),
              "1:50 000", MapLook("plain", "heath", ("#6f4f8f", "#c9a3cf")), Issue(2020, 3, "2025.1"),
              ("lueneburg-heath", "germany"), HEATH, ("heath", "moor", "village"), 50,
              Text("Weite Heideflächen, Wacholderhaine und Findlinge. Die Karte zeigt die Weidegebiete der "
                   "Heidschnucken und Wege, auf denen nur Kutschen fahren dürfen.",
                   "Wide heaths, juniper groves and boulders. The map shows the pastures of the moorland "
                   "sheep and the tracks that are open to carriages only.")),
    RegionMap("spreewald", "lowland", Text("Wanderkarte Spreewald", "Hiking map of the Spreewald"), "1:25 000",
              MapLook("lakes", "lowland", ("#3f6f3f", "#b5cf8a")), Issue(2022, 2, "2025.1"),
              ("spreewald", "germany"), LOWLAND, ("stream", "forest", "village"), 32,
              Text("Hunderte Wasserläufe unter Erlen, dazwischen Wiesen und Blockhäuser. Wehre, Schleusen "
                   "und Brücken sind für Paddler und Wanderer einzeln eingezeichnet.",
                   "Hundreds of waterways under alders, with meadows and log houses between them. Weirs, "
                   "locks and bridges are drawn one by one for paddlers and walkers.")),
    RegionMap("mecklenburg-lakes", "lowland", Text("Wanderkarte Mecklenburgische Seenplatte",
                                                   "Hiking map of the Mecklenburg lakes"), "1:50 000",
              MapLook("lakes", "lowland", ("#2f7f9f", "#a3d6c9")), Issue(2019, 4, "2025.2"),
              ("mecklenburg", "germany"), LAKES, ("lake", "forest", "reeds"), 70,
              Text("Über tausend Seen, verbunden durch Kanäle und stille Wälder. Rastplätze der Kraniche und "
                   "Horste der Fischadler sind mit Beobachtungsständen eingetragen.",
                   "More than a thousand lakes, joined by canals and quiet forests. Resting places of cranes "
                   "and nests of ospreys are shown with their hides.")),
)
