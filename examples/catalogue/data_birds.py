"""Field guides to birds: one package of type guide:bird for each entry."""

from dataclasses import dataclass
from typing import Optional, Tuple

from model import Issue, Text


@dataclass(frozen=True)
class Bird:
    """One species. `recording` tells how the guide depends on the recording of the same name, and
    `without` names keywords of its group that are wrong for this species."""
    id: str
    title: Text
    latin: str
    length_cm: int
    wingspan_cm: int
    months: Tuple[int, int]
    scene: str
    issue: Issue
    habitats: Tuple[str, ...]
    traits: Tuple[str, ...]
    text: Text
    tip: Text
    recording: Optional[str] = None
    without: Tuple[str, ...] = ()
    featured: bool = False


BIRDS = (
    Bird("blackbird", Text("Amsel", "Blackbird"), "Turdus merula", 25, 36, (1, 12), "garden",
         Issue(2019, 6, "2026.1"), ("garden", "forest", "hedge"), ("common",),
         Text("Die Amsel singt von Dächern und Baumspitzen, oft schon lange vor Sonnenaufgang. Das schwarze "
              "Männchen mit dem gelben Schnabel ist leicht zu erkennen, das braune Weibchen wird gern mit "
              "einer Singdrossel verwechselt.",
              "The blackbird sings from roofs and treetops, often long before sunrise. The black male with "
              "his yellow bill is easy to tell, while the brown female is often taken for a song thrush."),
         Text("Auf kurzem Rasen laufen Amseln ein paar Schritte, halten den Kopf schief und lauschen nach "
              "Regenwürmern.",
              "On short grass blackbirds run a few steps, tilt their heads and listen for worms."),
         recording="requires", featured=True),
    Bird("robin", Text("Rotkehlchen", "Robin"), "Erithacus rubecula", 14, 21, (1, 12), "winter",
         Issue(2019, 5, "2026.1"), ("garden", "forest", "hedge"), ("common", "trusting"),
         Text("Mit seiner orangeroten Brust und den großen Augen gehört das Rotkehlchen zu den beliebtesten "
              "Gartenvögeln. Es singt auch im Winter, und dann verteidigen selbst die Weibchen ihr Revier "
              "mit einer perlenden Strophe.",
              "With its orange breast and large eyes the robin is among the best-loved garden birds. It "
              "sings in winter too, when even the females defend a territory with their trickling phrases."),
         Text("Wer ein Beet umgräbt, bekommt oft Besuch: Rotkehlchen folgen jedem, der Erde aufwühlt.",
              "Dig a bed and you may have company: robins follow anyone who turns the soil."),
         recording="requires", featured=True),
    Bird("great-tit", Text("Kohlmeise", "Great tit"), "Parus major", 14, 24, (1, 12), "garden",
         Issue(2020, 4, "2025.2"), ("garden", "forest"), ("common", "trusting"),
         Text("Die größte heimische Meise trägt einen schwarzen Streif über dem gelben Bauch, beim Männchen "
              "breiter als beim Weibchen. Sie nimmt Nistkästen gern an und füttert eine Brut mit vielen "
              "Hundert Raupen am Tag.",
              "The largest of our tits has a black stripe down its yellow belly, broader in the male than in "
              "the female. It takes readily to nest boxes and feeds a brood with many hundreds of "
              "caterpillars a day."),
         Text("Ein Einflugloch von 32 Millimetern Weite passt der Kohlmeise genau.",
              "An entrance hole 32 millimetres wide suits a great tit exactly."),
         recording="uses"),
    Bird("blue-tit", Text("Blaumeise", "Blue tit"), "Cyanistes caeruleus", 12, 19, (1, 12), "garden",
         Issue(2020, 3, "2025.2"), ("garden", "forest"), ("common", "trusting"),
         Text("Kein anderer Vogel der Gärten ist so blau und gelb wie die kleine, wendige Blaumeise. Sie "
              "turnt kopfunter an dünnen Zweigen, wohin ihr größere Meisen nicht folgen.",
              "No other garden bird is as blue and yellow as the small, nimble blue tit. It hangs head down "
              "from thin twigs where larger tits cannot follow."),
         Text("In ultraviolettem Licht leuchtet die Kappe des Männchens; für andere Blaumeisen ist er daran "
              "sofort zu erkennen.",
              "The male's cap glows in ultraviolet light, which tells other blue tits at once who he is.")),
    Bird("chaffinch", Text("Buchfink", "Chaffinch"), "Fringilla coelebs", 15, 26, (1, 12), "wood",
         Issue(2021, 3, "2025.1"), ("forest", "garden"), ("common",),
         Text("Der Buchfink ist einer der häufigsten Brutvögel unserer Wälder. Sein Schlag endet mit einem "
              "kräftigen Schnörkel, und in jeder Gegend klingt dieser Schnörkel ein wenig anders.",
              "The chaffinch is one of the most numerous breeding birds of our woods. Its song ends in a "
              "vigorous flourish, and that flourish sounds a little different in every district."),
         Text("Zwei weiße Flügelbinden verraten ihn auch im Flug.",
              "Two white wing bars give it away even in flight."),
         recording="uses"),
    Bird("goldfinch", Text("Stieglitz", "Goldfinch"), "Carduelis carduelis", 13, 23, (1, 12), "autumn",
         Issue(2022, 2, "2025.1"), ("meadow", "garden"), ("colourful",),
         Text("Rotes Gesicht und gelbe Flügelbinde machen den Stieglitz unverwechselbar. In kleinen Trupps "
              "zieht er zu Disteln und Karden, deren Samen er mit dem spitzen Schnabel herausholt.",
              "A red face and a yellow wing bar make the goldfinch unmistakable. Small parties visit "
              "thistles and teasels and draw out the seeds with their pointed bills."),
         Text("Wer Disteln und Karden bis zum Frühjahr stehen lässt, hat im Winter Stieglitze im Garten.",
              "Leave thistles and teasels standing until spring and goldfinches will come in winter.")),
    Bird("bullfinch", Text("Gimpel", "Bullfinch"), "Pyrrhula pyrrhula", 16, 26, (1, 12), "winter",
         Issue(2022, 2, "2024.2"), ("forest", "garden"), ("colourful",),
         Text("Der rundliche Gimpel heißt auch Dompfaff, denn Farben und Kappe erinnern an ein Gewand aus "
              "alter Zeit. Paare halten das ganze Jahr zusammen und rufen einander mit einem weichen, etwas "
              "traurigen Pfiff.",
              "The plump bullfinch is a bird of hedges and young woods. Pairs stay together all year and "
              "keep in touch with a soft, slightly sad whistle."),
         Text("Im Spätwinter frisst der Gimpel Knospen von Obstbäumen; ein Trupp bleibt oft viele Minuten im "
              "selben Baum.",
              "In late winter bullfinches eat the buds of fruit trees; a party may stay in one tree for many "
              "minutes.")),
    Bird("kingfisher", Text("Eisvogel", "Kingfisher"), "Alcedo atthis", 17, 25, (1, 12), "water",
         Issue(2018, 7, "2026.1"), ("river", "stream", "lake"), ("colourful", "rare"),
         Text("Ein blauer Blitz dicht über dem Wasser: mehr sieht man vom Eisvogel meistens nicht. Er stößt "
              "von einem Ast nach kleinen Fischen und gräbt seine Brutröhre in steile Ufer.",
              "A streak of blue close above the water is often all that one sees of the kingfisher. It dives "
              "from a branch for small fish and digs its nesting tunnel into steep banks."),
         Text("Der scharfe, hohe Ruf kündigt den Vogel an, bevor er vorbeifliegt; also erst hören, dann "
              "schauen.",
              "The sharp, high call announces the bird before it passes: listen first, then look."),
         recording="requires", featured=True),
    Bird("woodpecker", Text("Buntspecht", "Great spotted woodpecker"), "Dendrocopos major", 23, 36, (1, 12),
         "wood", Issue(2019, 4, "2025.2"), ("forest", "garden"), ("common",),
         Text("Der Buntspecht ist der häufigste Specht in Mitteleuropa. Er trommelt im Frühjahr auf hohlen "
              "Ästen, zimmert jedes Jahr eine neue Höhle und schafft so Wohnungen für viele andere Tiere.",
              "The great spotted woodpecker is the commonest woodpecker of central Europe. It drums on "
              "hollow branches in spring and carves a new hole each year, which later houses many other "
              "animals."),
         Text("Nur das Männchen hat den roten Fleck im Nacken; Jungvögel tragen eine rote Kappe.",
              "Only the male has the red patch on the nape; young birds wear a red cap."),
         recording="requires"),
    Bird("white-stork", Text("Weißstorch", "White stork"), "Ciconia ciconia", 102, 210, (3, 9), "meadow",
         Issue(2020, 5, "2026.1"), ("meadow", "village"), ("migratory",),
         Text("Weißstörche kehren im März aus dem Süden zurück und beziehen dieselben Horste auf Dächern und "
              "Masten. Auf feuchten Wiesen schreiten sie langsam nach Fröschen, Mäusen und Heuschrecken.",
              "White storks return from the south in March and move into the same nests on roofs and poles. "
              "On wet meadows they stride slowly after frogs, mice and grasshoppers."),
         Text("Störche fliegen mit gestrecktem Hals, Reiher mit eingezogenem.",
              "Storks fly with the neck stretched out, herons with the neck drawn in."),
         recording="uses", featured=True),
    Bird("grey-heron", Text("Graureiher", "Grey heron"), "Ardea cinerea", 94, 185, (1, 12), "water",
         Issue(2021, 2, "2025.1"), ("lake", "river", "reeds"), ("common",),
         Text("Reglos steht der Graureiher im flachen Wasser, bis er blitzschnell zustößt. Er brütet in "
              "Kolonien hoch in den Bäumen, oft seit Generationen am selben Ort.",
              "The grey heron stands motionless in shallow water until it strikes like lightning. It breeds "
              "in colonies high in the trees, often in the same place for generations."),
         Text("Im Winter jagt er auf Feldern Mäuse und steht dann weit weg von jedem Wasser.",
              "In winter it hunts voles on fields and may stand far from any water.")),
    Bird("golden-eagle", Text("Steinadler", "Golden eagle"), "Aquila chrysaetos", 86, 215, (1, 12), "alps",
         Issue(2018, 6, "2026.1"), ("rock", "alp"), ("rare", "protected"),
         Text("Der Steinadler kreist mit leicht angehobenen Flügeln über den Graten der Alpen. Ein Paar "
              "beansprucht ein Revier von vielen Dutzend Quadratkilometern und nutzt darin mehrere Horste in "
              "Felswänden.",
              "The golden eagle circles above Alpine ridges with its wings slightly raised. A pair claims a "
              "territory of many dozens of square kilometres and uses several nests on its cliffs."),
         Text("Junge Adler zeigen weiße Flecken in Flügeln und Schwanz, die erst nach Jahren verschwinden.",
              "Young eagles show white patches in wings and tail that take years to disappear."),
         featured=True),
    Bird("buzzard", Text("Mäusebussard", "Common buzzard"), "Buteo buteo", 54, 122, (1, 12), "meadow",
         Issue(2020, 3, "2025.2"), ("field", "forest", "meadow"), ("common",),
         Text("Der Mäusebussard ist der häufigste Greifvogel Mitteleuropas und sitzt gern auf Pfählen am "
              "Straßenrand. Sein Gefieder reicht von fast weiß bis dunkelbraun, kaum zwei Vögel sehen gleich "
              "aus.",
              "The common buzzard is the most numerous bird of prey in central Europe and likes to sit on "
              "roadside posts. Its plumage ranges from almost white to dark brown, and hardly two birds look "
              "alike."),
         Text("Das miauende Rufen ahmt der Eichelhäher täuschend nach.",
              "The jay copies its mewing call to perfection."),
         recording="uses"),
    Bird("tawny-owl", Text("Waldkauz", "Tawny owl"), "Strix aluco", 39, 100, (1, 12), "night",
         Issue(2019, 5, "2026.1"), ("forest", "garden"), ("nocturnal", "common"),
         Text("Das lange, zitternde Heulen des Waldkauzes kennt jeder, doch die Eule selbst sieht man "
              "selten. Bei Tag sitzt sie dicht am Stamm, und ihr Gefieder gleicht der Rinde.",
              "Everyone knows the long, quavering hoot of the tawny owl, yet the bird itself is seldom seen. "
              "By day it sits close to a trunk, and its plumage looks just like bark."),
         Text("Aufgeregt zeternde Amseln und Meisen verraten am Tag, wo ein Kauz schläft.",
              "A crowd of scolding blackbirds and tits shows by day where an owl is asleep."),
         recording="requires", featured=True),
    Bird("swallow", Text("Rauchschwalbe", "Barn swallow"), "Hirundo rustica", 18, 33, (4, 9), "farm",
         Issue(2021, 3, "2025.2"), ("village", "meadow"), ("migratory",),
         Text("Rauchschwalben brüten in offenen Ställen und jagen tief über Wiesen und Höfen. Im September "
              "sammeln sie sich auf Drähten und ziehen bis weit in den Süden Afrikas.",
              "Barn swallows nest in open stables and hunt low over meadows and farmyards. In September they "
              "gather on wires and leave for the far south of Africa."),
         Text("Lange Schwanzspieße und rote Kehle trennen sie von der Mehlschwalbe mit ihrem weißen Bürzel.",
              "Long tail streamers and a red throat set it apart from the house martin with its white "
              "rump.")),
    Bird("jay", Text("Eichelhäher", "Jay"), "Garrulus glandarius", 34, 55, (1, 12), "autumn",
         Issue(2022, 2, "2024.2"), ("forest",), ("colourful", "common"),
         Text("Der Eichelhäher warnt den ganzen Wald mit seinem rauen Rätschen. Im Herbst vergräbt er "
              "Tausende Eicheln als Vorrat, und aus den vergessenen wachsen neue Eichen.",
              "The jay warns the whole forest with its harsh scream. In autumn it buries thousands of acorns "
              "for winter, and new oaks grow from those it forgets."),
         Text("Die blau gebänderten Federn am Flügel findet man mit etwas Glück auf dem Waldweg.",
              "With a little luck its blue-barred feathers can be found on a forest path."),
         without=("noun-birdsong",)),
    Bird("mallard", Text("Stockente", "Mallard"), "Anas platyrhynchos", 56, 90, (1, 12), "water",
         Issue(2020, 3, "2025.1"), ("lake", "river", "park"), ("common", "trusting"),
         Text("Die Stockente lebt auf fast jedem Gewässer, vom Stadtteich bis zum Bergsee. Nur der Erpel "
              "trägt im Prachtkleid den grünen Kopf, im Sommer ist er so braun wie die Ente.",
              "The mallard lives on almost any water, from a city pond to a mountain lake. Only the drake in "
              "full plumage has the green head; in summer he is as brown as the duck."),
         Text("Der gelbe Schnabel bleibt ihm auch im Sommer und verrät den Erpel.",
              "He keeps his yellow bill in summer, and it gives him away.")),
    Bird("hoopoe", Text("Wiedehopf", "Hoopoe"), "Upupa epops", 28, 46, (4, 9), "farm",
         Issue(None, 1, "2026.1"), ("meadow", "vineyard"), ("migratory", "rare", "colourful"),
         Text("Mit aufgerichteter Haube und schwarz-weißen Flügeln wirkt der Wiedehopf wie ein Gast aus dem "
              "Süden. Er braucht warme, offene Landschaften mit alten Bäumen und breitet sich an Weinbergen "
              "wieder aus.",
              "With its raised crest and black and white wings the hoopoe looks like a visitor from the "
              "south. It needs warm, open country with old trees and is spreading again along vineyards."),
         Text("Der dumpfe Ruf aus zwei oder drei Silben trägt an windstillen Morgen weit.",
              "The hollow call of two or three syllables carries far on still mornings.")),
    Bird("wren", Text("Zaunkönig", "Wren"), "Troglodytes troglodytes", 10, 15, (1, 12), "shade",
         Issue(2021, 2, "2025.1"), ("forest", "garden", "stream"), ("common",),
         Text("Der Zaunkönig wiegt kaum zehn Gramm und singt doch so laut, dass man ihn hundert Meter weit "
              "hört. Das Männchen baut mehrere Kugelnester, das Weibchen sucht sich eines davon aus.",
              "The wren weighs barely ten grams, yet its song can be heard a hundred metres away. The male "
              "builds several domed nests and the female chooses one of them."),
         Text("Reisighaufen und Wurzelteller am Bach sind die besten Plätze, um ihn zu finden.",
              "Brushwood and upturned roots beside a stream are the best places to find one."),
         recording="uses"),
    Bird("nuthatch", Text("Kleiber", "Nuthatch"), "Sitta europaea", 14, 25, (1, 12), "wood",
         Issue(2023, 1, "2025.1"), ("forest", "park"), ("common",),
         Text("Als einziger heimischer Vogel klettert der Kleiber auch kopfüber den Stamm hinab. Ist ihm der "
              "Eingang einer Höhle zu weit, mauert er ihn mit Lehm passend zu.",
              "The nuthatch is the only bird of our woods that also climbs down a trunk head first. If the "
              "entrance to a hole is too wide, it walls it up with mud until it fits."),
         Text("Ein lautes Klopfen im Winter stammt oft von einem Kleiber, der eine Nuss in die Rinde "
              "geklemmt hat.",
              "A loud tapping in winter is often a nuthatch that has wedged a nut into the bark.")),
)
