"""Field guides to trees: one package of type guide:tree for each entry."""

from dataclasses import dataclass
from typing import Tuple

from model import Issue, Text
from picture_trees import TreeLook


@dataclass(frozen=True)
class Tree:
    """One kind of tree. `without` are keywords of its group that are wrong for this one."""
    id: str
    title: Text
    latin: str
    height_m: int
    age_years: int
    months: Tuple[int, int]
    look: TreeLook
    issue: Issue
    habitats: Tuple[str, ...]
    traits: Tuple[str, ...]
    text: Text
    tip: Text
    without: Tuple[str, ...] = ()
    featured: bool = False


TREES = (
    Tree("spruce", Text("Fichte", "Norway spruce"), "Picea abies", 40, 300, (4, 5),
         TreeLook("spruce", "#2f6b52", "#6f4e37", "spruce", "#2f6b52", "winter"),
         Issue(2020, 3, "2025.2"), ("forest", "alp"), ("common",),
         Text("Die Fichte ist der häufigste Baum der Bergwälder und an ihrer spitzen, regelmäßigen Krone zu "
              "erkennen. Ihre Zapfen hängen und fallen als Ganzes zu Boden.",
              "The spruce is the commonest tree of mountain forests and is known by its pointed, regular "
              "crown. Its cones hang down and drop to the ground in one piece."),
         Text("Die Fichte sticht, die Tanne nicht: am Zweig lassen sich beide sofort unterscheiden.",
              "Spruce needles prick and fir needles do not, so a touch of the twig tells them apart.")),
    Tree("fir", Text("Weißtanne", "Silver fir"), "Abies alba", 50, 500, (5, 6),
         TreeLook("fir", "#3a7a66", "#7a6a5c", "fir", "#3f8a6a", "wood"),
         Issue(2021, 2, "2025.1"), ("forest",), (),
         Text("Die Weißtanne trägt flache, weiche Nadeln mit zwei hellen Streifen auf der Unterseite. Ihre "
              "Zapfen stehen aufrecht und zerfallen noch am Zweig, deshalb findet man sie nie am Boden.",
              "The silver fir bears flat, soft needles with two pale stripes below. Its cones stand upright "
              "and fall apart on the branch, so they are never found on the ground."),
         Text("Alte Tannen enden oben in einem flachen Storchennest aus Zweigen statt in einer Spitze.",
              "The tops of old firs end in a flat nest of twigs rather than in a point.")),
    Tree("larch", Text("Lärche", "Larch"), "Larix decidua", 38, 600, (3, 5),
         TreeLook("larch", "#e0a63a", "#7d563d", "larch", "#d39a33", "alps"),
         Issue(2019, 5, "2026.1"), ("alp", "forest"), ("colourful",),
         Text("Als einziger heimischer Nadelbaum wirft die Lärche im Herbst ihre Nadeln ab. Vorher färbt sie "
              "ganze Hänge der Alpen goldgelb.",
              "The larch is the only native conifer that sheds its needles in autumn. Before they fall it "
              "turns whole slopes of the Alps to gold."),
         Text("Im April stehen die jungen Zapfen als rosarote Blüten zwischen hellgrünen Nadelbüscheln.",
              "In April the young cones stand like pink flowers among pale green tufts of needles."),
         without=("adj-evergreen",), featured=True),
    Tree("pine", Text("Waldkiefer", "Scots pine"), "Pinus sylvestris", 35, 400, (5, 6),
         TreeLook("pine", "#4f8560", "#c0713f", "pine", "#4a8a66", "heath"),
         Issue(2020, 2, "2025.1"), ("heath", "moor", "forest"), ("common",),
         Text("Die Waldkiefer wächst auf trockenem Sand wie auf nassem Moor. Im oberen Teil ist ihr Stamm "
              "fuchsrot, die Krone wird im Alter breit wie ein Schirm.",
              "The Scots pine grows on dry sand as well as on wet bog. The upper part of its trunk is "
              "fox-red, and with age the crown spreads like an umbrella."),
         Text("Zwei Nadeln in jedem Bündel, leicht gedreht: daran ist sie von anderen Kiefern zu "
              "unterscheiden.",
              "Two needles in each bundle, slightly twisted, tell it from other pines.")),
    Tree("stone-pine", Text("Zirbe", "Swiss stone pine"), "Pinus cembra", 25, 1000, (6, 7),
         TreeLook("stone-pine", "#3d7060", "#7d5e48", "stone-pine", "#3f7d66", "alps"),
         Issue(2021, 3, "2026.1"), ("alp",), ("fragrant", "edible"),
         Text("Keine Baumart steigt in den Alpen höher als die Zirbe, manche stehen über zweitausend Meter "
              "hoch. Ihr Holz duftet jahrzehntelang, die Nüsse schmecken Menschen und Tannenhähern.",
              "No tree climbs higher in the Alps than the stone pine, and some stand above two thousand "
              "metres. Its wood stays fragrant for decades, and people and nutcrackers alike enjoy "
              "the nuts."),
         Text("Fünf Nadeln in jedem Bündel gibt es bei keiner anderen Kiefer der Alpen.",
              "No other pine of the Alps has five needles in each bundle.")),
    Tree("yew", Text("Eibe", "Yew"), "Taxus baccata", 15, 2000, (2, 4),
         TreeLook("yew", "#2f5f4a", "#7d4f3a", "yew", "#2f6b4c", "shade", dots="#d63a34"),
         Issue(2022, 2, "2025.2"), ("forest", "park"), ("poisonous", "protected"),
         Text("Die Eibe erträgt tiefen Schatten und kann weit über tausend Jahre alt werden. Statt Zapfen "
              "trägt sie rote Becher, und alles an ihr außer diesem roten Mantel ist giftig.",
              "The yew endures deep shade and may live for well over a thousand years. Instead of cones it "
              "bears red cups, and every part of it but this red coat is poisonous."),
         Text("Vögel fressen den Mantel und scheiden den giftigen Kern unzerkaut wieder aus.",
              "Birds eat the coat and pass the poisonous seed unbroken."),
         without=("noun-cone",)),
    Tree("beech", Text("Rotbuche", "Beech"), "Fagus sylvatica", 35, 300, (4, 5),
         TreeLook("beech", "#5fa255", "#8d8f88", "beech", "#63ab55", "wood"),
         Issue(2019, 4, "2026.1"), ("forest",), ("common",),
         Text("Ohne den Menschen wäre Mitteleuropa zum größten Teil Buchenwald. Glatte, silbergraue Stämme "
              "und ein dichtes Blätterdach geben ihm das Aussehen einer hohen Halle.",
              "Without people most of central Europe would be beech forest. Smooth, silver-grey trunks and a "
              "dense roof of leaves make it look like a lofty hall."),
         Text("Im April tragen junge Blätter feine Seidenhaare am Rand; dann schmecken sie säuerlich und "
              "frisch.",
              "In April young leaves have fine silky hairs along the edge and taste fresh and slightly "
              "sour."),
         featured=True),
    Tree("oak", Text("Stieleiche", "Oak"), "Quercus robur", 35, 1000, (4, 5),
         TreeLook("oak", "#6a9a4a", "#6b5040", "oak", "#6fa24c", "farm"),
         Issue(2019, 4, "2025.2"), ("forest", "field", "park"), ("common",),
         Text("An keinem anderen Baum leben so viele Tiere wie an der Eiche, allein Hunderte Arten von "
              "Käfern. Ihre Eicheln sitzen auf langen Stielen, was dem Baum den Namen gab.",
              "No other tree is home to as many animals as the oak, among them hundreds of kinds of beetle. "
              "Its acorns sit on long stalks, unlike those of the sessile oak."),
         Text("Breite, freistehende Kronen zeigen alte Weiden an, auf denen früher Vieh unter Eichen graste.",
              "Broad, free-standing crowns point to old pastures where cattle once grazed under oaks."),
         featured=True),
    Tree("birch", Text("Hängebirke", "Silver birch"), "Betula pendula", 25, 120, (4, 5),
         TreeLook("birch", "#9cc45a", "#eceae2", "birch", "#8dbb4c", "meadow"),
         Issue(2020, 2, "2025.1"), ("moor", "heath", "forest"), ("common",),
         Text("Die weiße Rinde der Birke leuchtet im Moor wie am Wegrand. Als Pionier besiedelt sie kahle "
              "Flächen und bereitet den Boden für Bäume, die nach ihr kommen.",
              "The white bark of the birch shines in bogs and along tracks. As a pioneer it settles on bare "
              "land and prepares the soil for the trees that follow."),
         Text("An alten Stämmen bricht die Rinde am Fuß zu schwarzen Rauten auf.",
              "At the foot of old trunks the bark breaks into black diamonds.")),
    Tree("linden", Text("Sommerlinde", "Large-leaved lime"), "Tilia platyphyllos", 33, 1000, (6, 7),
         TreeLook("linden", "#78ad52", "#6f5a48", "heart", "#78ad52", "garden", dots="#f3e7a0"),
         Issue(2021, 2, "2025.1"), ("village", "park"), ("fragrant", "medicinal"),
         Text("Unter der Dorflinde wurde getanzt und Gericht gehalten. Im Juni duften ihre Blüten weithin "
              "nach Honig, und der ganze Baum summt von Bienen.",
              "People danced and held court under the village lime. In June its flowers fill the air with "
              "the scent of honey, and the whole tree hums with bees."),
         Text("Weiße Haarbüschel in den Aderwinkeln unter dem Blatt kennzeichnen die Sommerlinde, rostbraune "
              "die Winterlinde.",
              "White tufts of hair where the veins meet mark the large-leaved lime, rust-brown ones the "
              "small-leaved lime.")),
    Tree("maple", Text("Bergahorn", "Sycamore maple"), "Acer pseudoplatanus", 32, 500, (4, 5),
         TreeLook("round", "#dd7f3a", "#77604e", "maple", "#d9652f", "autumn"),
         Issue(2020, 3, "2025.2"), ("alp", "forest", "park"), ("colourful",),
         Text("Auf den Almen der Nordalpen stehen Bergahorne, die mehrere Hundert Jahre alt sind. Im Oktober "
              "leuchten ihre Kronen gelb bis orange, und die geflügelten Samen kreiseln durch die Luft.",
              "On the pastures of the northern Alps stand sycamore maples several hundred years old. In "
              "October their crowns glow yellow to orange, and the winged seeds spin through the air."),
         Text("Die beiden Flügel der Frucht bilden einen rechten Winkel, beim Spitzahorn einen stumpfen.",
              "The two wings of its fruit form a right angle, those of the Norway maple a wider one.")),
    Tree("rowan", Text("Eberesche", "Rowan"), "Sorbus aucuparia", 15, 100, (5, 6),
         TreeLook("slim", "#6d9f56", "#85705f", "rowan", "#5f9a52", "alps", dots="#d9432f"),
         Issue(2022, 2, "2025.1"), ("forest", "alp", "hedge"), ("edible",),
         Text("Die Vogelbeeren der Eberesche ernähren über sechzig Vogelarten. Der genügsame Baum wächst im "
              "Tiefland ebenso wie an der Waldgrenze.",
              "The berries of the rowan feed more than sixty kinds of bird. This undemanding tree grows in "
              "the lowlands as well as at the tree line."),
         Text("Die Beeren sind roh sehr bitter, gekocht geben sie eine feine Marmelade.",
              "Raw, the berries are very bitter; cooked, they make a fine jam.")),
    Tree("willow", Text("Silberweide", "White willow"), "Salix alba", 28, 150, (4, 5),
         TreeLook("willow", "#a5bf62", "#6d5a46", "willow", "#9ab558", "water"),
         Issue(2021, 2, "2024.2"), ("river", "lake", "stream"), ("medicinal",),
         Text("Weiden säumen Flüsse und halten mit ihren Wurzeln das Ufer fest. Aus ihren Ruten werden Körbe "
              "geflochten, ihre Rinde linderte schon in alter Zeit Fieber.",
              "Willows line rivers and hold the banks with their roots. Their rods are woven into baskets, "
              "and their bark eased fevers in ancient times."),
         Text("Kopfweiden werden mit den Jahren hohl und bieten Steinkäuzen und Fledermäusen Wohnung.",
              "Pollarded willows grow hollow with age and shelter little owls and bats.")),
    Tree("cherry", Text("Vogelkirsche", "Wild cherry"), "Prunus avium", 22, 100, (4, 5),
         TreeLook("round", "#f4d3da", "#6d4a42", "cherry", "#6da552", "garden", dots="#ffffff"),
         Issue(None, 1, "2026.1"), ("forest", "hedge"), ("edible", "early"),
         Text("Im April steht die Vogelkirsche als weiße Wolke am Waldrand. Von ihr stammen alle Süßkirschen "
              "der Gärten ab; die kleinen wilden Früchte sind herb, aber essbar.",
              "In April the wild cherry stands at the forest edge like a white cloud. All sweet cherries of "
              "our gardens descend from it; the small wild fruits are tart but edible."),
         Text("Querstreifen auf der glatten Rinde und zwei rote Drüsen am Blattstiel sind sichere Zeichen.",
              "Bands across the smooth bark and two red glands on the leaf stalk are sure signs.")),
    Tree("alder", Text("Schwarzerle", "Alder"), "Alnus glutinosa", 25, 120, (3, 4),
         TreeLook("slim", "#4f8a55", "#5f5248", "alder", "#569056", "water"),
         Issue(2023, 1, "2025.1"), ("stream", "river", "moor"), (),
         Text("Die Schwarzerle steht mit den Füßen im Wasser und düngt den Boden durch Knöllchen an ihren "
              "Wurzeln. Ihr Holz hält unter Wasser Jahrhunderte, ganze Städte ruhen auf Erlenpfählen.",
              "The alder stands with its feet in the water and feeds the soil through nodules on its roots. "
              "Its wood lasts for centuries under water, and whole cities rest on alder piles."),
         Text("Kleine, verholzte Zapfen bleiben den ganzen Winter an den Zweigen.",
              "Small woody cones stay on the twigs all winter.")),
)
