"""Field guides to wild flowers: one package of type guide:flower for each entry."""

from dataclasses import dataclass
from typing import Tuple

from model import Issue, Text
from picture_flowers import FlowerLook


@dataclass(frozen=True)
class Flower:
    """One kind of flower. `months` is when it blooms."""
    id: str
    title: Text
    latin: str
    height_cm: int
    months: Tuple[int, int]
    look: FlowerLook
    issue: Issue
    habitats: Tuple[str, ...]
    traits: Tuple[str, ...]
    text: Text
    tip: Text
    featured: bool = False


FLOWERS = (
    Flower("edelweiss", Text("Edelweiß", "Edelweiss"), "Leontopodium nivale", 15, (7, 9),
           FlowerLook("edelweiss", "#e6e9df", "#e3c14a", petals=9, leaf_colour="#8fa68a", scene="alps"),
           Issue(2018, 6, "2026.1"), ("alp", "rock"), ("protected", "rare"),
           Text("Der weiße Filz schützt das Edelweiß vor Sonne, Wind und Austrocknung. Was wie eine Blüte "
                "aussieht, ist ein Stern aus Hochblättern um viele kleine Blütenkörbe.",
                "Its white felt protects the edelweiss from sun, wind and drought. What looks like one "
                "flower is a star of bracts around many small flower heads."),
           Text("Es wächst häufiger auf steilen Bergwiesen als in Felswänden; dort blieb es nur vor "
                "Sammlern verschont.",
                "It grows on steep mountain meadows more than on cliffs, where it merely survived the "
                "collectors."),
           featured=True),
    Flower("gentian", Text("Stängelloser Enzian", "Stemless gentian"), "Gentiana acaulis", 8, (5, 8),
           FlowerLook("trumpet", "#2f55c4", "#e9f0c8", leaf="rosette", leaf_colour="#5b9454", scene="alps"),
           Issue(2019, 4, "2025.2"), ("alp", "meadow"), ("protected", "colourful"),
           Text("Kein Blau der Alpen ist tiefer als das des Enzians. Die großen Trichter öffnen sich nur bei "
                "Sonne und schließen sich, sobald ein Schatten über die Wiese zieht.",
                "No blue in the Alps is deeper than that of the gentian. The large trumpets open only in "
                "sunshine and close as soon as a shadow crosses the meadow."),
           Text("Grüne Streifen im Inneren des Trichters zeigen, dass er auf kalkarmem Boden wächst.",
                "Green stripes inside the trumpet show that it is growing on soil poor in lime.")),
    Flower("arnica", Text("Arnika", "Arnica"), "Arnica montana", 45, (6, 8),
           FlowerLook("rayed", "#f4a428", "#d97f1f", petals=13, leaf="rosette", leaf_colour="#6a9c55", scene="alps",
                      petal_tip="notched"),
           Issue(2020, 3, "2025.1"), ("alp", "moor", "meadow"), ("medicinal", "protected", "fragrant"),
           Text("Arnika blüht dottergelb und etwas zerzaust auf mageren Bergwiesen. Sie ist eine alte "
                "Heilpflanze, steht aber unter Schutz und darf nicht gepflückt werden.",
                "Arnica blooms egg-yellow and a little tousled on poor mountain meadows. It is an old "
                "healing plant but is protected by law and must not be picked."),
           Text("Ein einziges Paar Blätter am Stängel unterscheidet sie von ähnlichen gelben Korbblütlern.",
                "A single pair of leaves on the stem tells it from similar yellow daisies.")),
    Flower("cowslip", Text("Wiesenschlüsselblume", "Cowslip"), "Primula veris", 20, (4, 5),
           FlowerLook("umbel", "#f7d038", "#ef8f2a", leaf="rosette", leaf_colour="#6fa557"),
           Issue(2020, 2, "2025.1"), ("meadow",), ("early", "fragrant", "protected"),
           Text("Wie ein Schlüsselbund nicken die duftenden Blüten der Schlüsselblume im April über "
                "trockenen Wiesen. Fünf orangefarbene Flecken führen Bienen und Falter zum Nektar.",
                "Like a bunch of keys the scented flowers of the cowslip nod over dry meadows in April. Five "
                "orange spots lead bees and butterflies to the nectar."),
           Text("Die hohe Schlüsselblume im Wald ist blasser, größer und duftet nicht.",
                "The oxlip of the woods is paler, larger and has no scent.")),
    Flower("poppy", Text("Klatschmohn", "Common poppy"), "Papaver rhoeas", 60, (5, 8),
           FlowerLook("bowl", "#e0402f", "#2a2026", leaf="feather", leaf_colour="#6d9a62", scene="farm"),
           Issue(2019, 3, "2025.2"), ("field",), ("colourful", "poisonous"),
           Text("Eine Blüte des Klatschmohns dauert nur wenige Tage, doch die Samen warten Jahrzehnte im "
                "Boden. Wo Äcker nicht gespritzt werden, färbt er im Juni ganze Felder rot.",
                "A poppy flower lasts only a few days, but its seeds wait in the soil for decades. Where "
                "fields are not sprayed it turns them red in June."),
           Text("Die reife Kapsel streut ihre Samen bei Wind aus kleinen Fenstern unter dem Deckel.",
                "The ripe capsule shakes out its seeds in the wind through small windows under the lid."),
           featured=True),
    Flower("cornflower", Text("Kornblume", "Cornflower"), "Centaurea cyanus", 70, (6, 9),
           FlowerLook("cornflower", "#3f6fd8", "#5a3fa0", petals=9, leaf_colour="#7fa08a", scene="farm",
                      petal_tip="fringed"),
           Issue(2020, 2, "2025.1"), ("field",), ("colourful",),
           Text("Die Kornblume kam mit dem Getreide zu uns und wäre mit dem sauberen Saatgut beinahe wieder "
                "verschwunden. An Feldrändern ohne Spritzmittel kehrt ihr reines Blau zurück.",
                "The cornflower came with the grain and almost vanished again when seed grew clean. Along "
                "field margins that are not sprayed its pure blue is returning."),
           Text("Nur die großen Randblüten locken; Nektar und Samen bilden allein die kleinen in der Mitte.",
                "The large outer florets only attract; nectar and seeds come from the small ones in the "
                "middle.")),
    Flower("daisy", Text("Margerite", "Oxeye daisy"), "Leucanthemum vulgare", 60, (5, 9),
           FlowerLook("rayed", "#ffffff", "#f3bf2f", petals=18),
           Issue(2021, 2, "2025.1"), ("meadow",), ("common",),
           Text("Die Margerite ist das Kennzeichen der bunten Wiese, die erst spät gemäht wird. Ihr gelber "
                "Knopf besteht aus Hunderten einzelner Blüten, die von außen nach innen aufgehen.",
                "The oxeye daisy is the mark of a flowery meadow that is mown late. Its yellow button "
                "consists of hundreds of florets, which open from the outside inwards."),
           Text("Gänseblümchen haben blattlose Stiele, Margeriten kleine gezähnte Blätter bis nach oben.",
                "Lawn daisies have bare stalks, while oxeye daisies bear small toothed leaves all the "
                "way up.")),
    Flower("dandelion", Text("Löwenzahn", "Dandelion"), "Taraxacum officinale", 30, (4, 6),
           FlowerLook("tousled", "#f8ce2e", "#e9a01f", petals=30, leaf="feather", leaf_colour="#5f9d4c", scene="garden",
                      petal_tip="notched"),
           Issue(2021, 2, "2024.2"), ("meadow", "garden"), ("common", "edible", "medicinal", "early"),
           Text("Erst Sonne, dann Pusteblume: Kaum eine Pflanze kennt jedes Kind so gut wie den Löwenzahn. "
                "Junge Blätter geben einen würzigen Salat, und Bienen holen im Frühling Pollen in Fülle.",
                "First a sun, then a clock: hardly any plant is as well known to every child as the "
                "dandelion. Young leaves make a spicy salad, and bees gather plenty of pollen in spring."),
           Text("Jeder Schirm trägt eine Frucht mit Widerhaken, die sich im Boden festhält.",
                "Each parachute carries a fruit with barbs that anchor it in the soil.")),
    Flower("marsh-marigold", Text("Sumpfdotterblume", "Marsh marigold"), "Caltha palustris", 30, (3, 6),
           FlowerLook("rayed", "#f7c928", "#dba21c", petals=5, leaf="round", leaf_colour="#4f9a52", scene="water"),
           Issue(2022, 1, "2025.1"), ("stream", "meadow", "moor"), ("early", "poisonous"),
           Text("An Bächen und auf nassen Wiesen leuchtet die Sumpfdotterblume schon im März. Ihre fettig "
                "glänzenden Blätter und Blüten halten das Wasser ab, die Samen schwimmen davon.",
                "Beside brooks and on wet meadows the marsh marigold glows as early as March. Its greasy, "
                "shining leaves and flowers keep the water off, and its seeds float away."),
           Text("Nach Regen füllen sich die Schalen der Blüten mit Wasser, und die Pflanze bestäubt sich "
                "selbst.",
                "After rain the bowls of the flowers fill with water, and the plant pollinates itself.")),
    Flower("anemone", Text("Buschwindröschen", "Wood anemone"), "Anemone nemorosa", 20, (3, 5),
           FlowerLook("rayed", "#fdfdfb", "#f0cf55", petals=6, leaf="feather", leaf_colour="#5f9a58", scene="wood"),
           Issue(2020, 2, "2025.2"), ("forest",), ("early", "poisonous", "common"),
           Text("Bevor die Buchen ihr Laub entfalten, bedecken Buschwindröschen den Waldboden wie spät "
                "gefallener Schnee. Nach wenigen Wochen ziehen sie sich in die Erde zurück.",
                "Before the beeches unfold their leaves, wood anemones cover the forest floor like late "
                "snow. After a few weeks they withdraw into the ground."),
           Text("Bei Regen und in der Nacht schließen sich die Blüten und lassen die Köpfe hängen.",
                "In rain and at night the flowers close and hang their heads.")),
    Flower("snowdrop", Text("Schneeglöckchen", "Snowdrop"), "Galanthus nivalis", 18, (1, 3),
           FlowerLook("snowdrop", "#ffffff", "#6fb04f", leaf="grass", leaf_colour="#5f9a62", scene="wood"),
           Issue(2021, 2, "2026.1"), ("forest", "garden", "park"), ("early", "protected", "poisonous"),
           Text("Das Schneeglöckchen schiebt seine Blüten durch den letzten Schnee; die Zwiebel gibt dabei "
                "Wärme ab. Wilde Bestände wachsen in Auwäldern und sind streng geschützt.",
                "The snowdrop pushes its flowers through the last snow, warmed by its own bulb. Wild stands "
                "grow in riverside woods and are strictly protected."),
           Text("Ameisen verbreiten die Samen, an denen ein nahrhaftes Anhängsel sitzt.",
                "Ants spread the seeds, each of which has a nourishing appendage.")),
    Flower("lily-of-the-valley", Text("Maiglöckchen", "Lily of the valley"), "Convallaria majalis", 22, (5, 6),
           FlowerLook("arched", "#fffdf6", "#e6dba0", leaf="broad", leaf_colour="#4f9456", scene="shade"),
           Issue(2021, 2, "2025.1"), ("forest",), ("fragrant", "poisonous"),
           Text("Der Duft des Maiglöckchens erfüllt im Mai lichte Laubwälder. Alle Teile sind sehr giftig, "
                "auch die roten Beeren des Spätsommers.",
                "In May the scent of the lily of the valley fills open woods. All parts are highly "
                "poisonous, including the red berries of late summer."),
           Text("Bärlauch riecht nach Knoblauch und hat einen Stiel für jedes Blatt; hier wachsen zwei "
                "Blätter aus einem Stiel.",
                "Ramsons smell of garlic and have one stalk to each leaf; here two leaves rise from one "
                "stalk.")),
    Flower("bellflower", Text("Glockenblume", "Harebell"), "Campanula rotundifolia", 30, (6, 10),
           FlowerLook("bells", "#7a72d6", "#f3ecc0", leaf_colour="#6a9f58"),
           Issue(None, 2, "2025.1"), ("meadow", "rock", "heath"), ("common",),
           Text("Zart wie ein Halm und doch zäh: Die Glockenblume wächst auf Mauern, Felsen und mageren "
                "Wiesen bis in den Herbst. In ihren Glocken übernachten kleine Wildbienen.",
                "Delicate as a stalk of grass and yet tough, the harebell grows on walls, rocks and poor "
                "meadows into autumn. Small wild bees spend the night in its bells."),
           Text("Rund sind nur die untersten Blätter, und die sind zur Blüte meist schon verwelkt.",
                "Only the lowest leaves are round, and they have usually withered by the time it blooms.")),
    Flower("foxglove", Text("Roter Fingerhut", "Foxglove"), "Digitalis purpurea", 120, (6, 8),
           FlowerLook("spike", "#c2559c", "#f6dcea", leaf="rosette", leaf_colour="#5f9560", scene="wood"),
           Issue(2020, 3, "2025.2"), ("forest",), ("poisonous", "medicinal", "colourful"),
           Text("Auf Lichtungen und Kahlschlägen stehen im Juni die purpurnen Kerzen des Fingerhuts. Zwei "
                "Blätter können einen Menschen töten, in winziger Menge stärkt derselbe Stoff das Herz.",
                "In June the purple spires of the foxglove stand in clearings. Two leaves can kill a person, "
                "while in tiny amounts the same substance strengthens the heart."),
           Text("Hummeln kriechen ganz in die Röhre; die dunklen Flecken weisen ihnen den Weg.",
                "Bumblebees crawl right into the tube, guided by its dark spots.")),
    Flower("heather", Text("Besenheide", "Heather"), "Calluna vulgaris", 50, (8, 10),
           FlowerLook("bush", "#b565b0", "#f6e1f2", leaf_colour="#7a7a50", scene="heath"),
           Issue(2019, 4, "2026.1"), ("heath", "moor"), ("evergreen", "common"),
           Text("Im August verwandelt die Besenheide sandige Ebenen in ein violettes Meer. Ohne Schafe, die "
                "junge Bäume abbeißen, würde jede Heide in wenigen Jahrzehnten zu Wald.",
                "In August heather turns sandy plains into a violet sea. Without sheep to browse young trees "
                "every heath would become forest within decades."),
           Text("Heidehonig ist so zäh wie Gelee und muss vor dem Schleudern gelockert werden.",
                "Heather honey is as stiff as jelly and has to be loosened before it can be extracted.")),
    Flower("crocus", Text("Frühlingskrokus", "Spring crocus"), "Crocus vernus", 12, (2, 4),
           FlowerLook("chalice", "#8f6fce", "#f29a2e", leaf="grass", leaf_colour="#5f9a55", scene="winter"),
           Issue(2022, 2, "2025.2"), ("alp", "meadow"), ("early", "protected"),
           Text("Kaum schmilzt der Schnee, stehen auf den Almen Tausende violette und weiße Kelche. Wilde "
                "Krokuswiesen vertragen weder Dünger noch Fußtritte.",
                "No sooner has the snow melted than thousands of violet and white cups stand on the alpine "
                "pastures. Wild crocus meadows bear neither fertiliser nor footsteps."),
           Text("Die Kelche öffnen sich in wenigen Minuten, sobald die Luft ein Grad wärmer wird.",
                "The cups open within minutes as soon as the air warms by a single degree.")),
    Flower("water-lily", Text("Seerose", "Water lily"), "Nymphaea alba", 10, (6, 9),
           FlowerLook("floating", "#f9dbe4", "#f3c23c", leaf_colour="#4f9466", scene="water"),
           Issue(2022, 1, "2025.1"), ("lake",), ("protected", "fragrant"),
           Text("Die Seerose öffnet ihre großen Blüten am Vormittag und schließt sie am Nachmittag. Ihre "
                "Blätter schwimmen, weil Luft in ihnen ist, und atmen durch die Oberseite.",
                "The water lily opens its large flowers in the morning and closes them in the afternoon. Its "
                "leaves float on the air inside them and breathe through the upper side."),
           Text("Stiele von drei Metern Länge verbinden die Blätter mit dem Wurzelstock im Schlamm.",
                "Stalks up to three metres long join the leaves to the rootstock in the mud.")),
)
