"""Bicycle tours: one package of type trail:cycling for each entry."""

from data_hikes import Trail
from model import Issue, Text

RIDES = (
    Trail("ride-moselle", "moselle", "river-rides", "easy",
          Text("Durch die Moselschleifen", "Along the loops of the Moselle"),
          ("vineyards", "day", "cycling", "#c8403c"),
          Issue(2019, 5, "2026.1"), ("river", "vineyard", "castle", "village"), ("paved", "family-friendly"),
          Text("Immer am Wasser entlang rollt man von einem Weinort zum nächsten, über sich die steilsten "
               "Lagen Europas. Steigungen gibt es keine, und auf halber Strecke fährt ein Schiff zurück.",
               "Always beside the water, the track rolls from one wine village to the next below the "
               "steepest vineyards of Europe. There are no climbs, and a boat returns from halfway."),
          ((49.9160, 7.0740, 112), (49.9530, 7.0100, 111), (49.9790, 7.0830, 109), (49.9510, 7.1170, 108),
           (50.0250, 7.1130, 106), (50.0280, 7.1820, 104)), 420, 4,
          uses=("bird-hoopoe",), featured=True, hours=3.5),
    Trail("ride-constance", "lake-constance", "lake-rides", "easy",
          Text("Am Ufer des Überlinger Sees", "On the shore of the Überlinger See"),
          ("lake", "day", "cycling", "#2f6fb5"),
          Issue(2020, 4, "2025.2"), ("lake", "village", "reeds"), ("paved", "family-friendly", "scenic"),
          Text("Der nordwestliche Arm des Bodensees ist ruhiger als die großen Ufer. Badestellen, Obststände "
               "und Schilf voller Vögel wechseln sich ab, eine Fähre schließt die Runde.",
               "The north-western arm of Lake Constance is quieter than its great shores. Bathing places, "
               "fruit stalls and reeds full of birds take turns, and a ferry completes the round."),
          ((47.6600, 9.1750, 400), (47.7000, 9.0900, 415), (47.7400, 8.9700, 398), (47.8000, 9.0350, 402),
           (47.7670, 9.1600, 403), (47.6940, 9.2700, 405)), 500, 7,
          uses=("bird-mallard", "flower-water-lily"), hours=4.0),
    Trail("ride-mecklenburg", "mecklenburg-lakes", "lake-rides", "medium",
          Text("Im Land der tausend Seen", "In the land of a thousand lakes"),
          ("lakeland", "morning", "cycling", "#c8403c"),
          Issue(2019, 4, "2025.2"), ("lake", "forest", "reeds"), ("quiet",),
          Text("Sandige Waldwege verbinden klare Seen, an denen im Herbst Tausende Kraniche rasten. Ein "
               "Fernglas gehört ins Gepäck, denn Beobachtungsstände liegen direkt am Weg.",
               "Sandy forest tracks join clear lakes where thousands of cranes rest in autumn. Bring "
               "binoculars, for there are hides right beside the track."),
          ((53.5200, 12.6800, 66), (53.4820, 12.7600, 72), (53.4350, 12.8050, 64), (53.4050, 12.9050, 78),
           (53.3900, 12.9900, 82), (53.3620, 13.0630, 76)), 600, 9,
          uses=("sound-crane", "bird-kingfisher"), gear=("binoculars",), featured=True, hours=4.5),
    Trail("ride-ruegen-lagoons", "ruegen", "coast-rides", "medium",
          Text("Zwischen Bodden und Meer", "Between lagoon and sea"),
          ("dunes", "day", "cycling", "#3f8f5f"),
          Issue(2021, 3, "2025.1"), ("beach", "forest", "lighthouse"), ("scenic",),
          Text("Von den stillen Bodden geht es durch Buchenwald zu langen Sandstränden. Auf den Hügeln der "
               "Insel ist Rückenwind nie garantiert, Aussicht dagegen schon.",
               "From quiet lagoons the route runs through beech forest to long sandy beaches. On the hills "
               "of the island a tailwind is never certain, but the view is."),
          ((54.4180, 13.4320, 62), (54.4730, 13.4470, 8), (54.4830, 13.5100, 6), (54.4600, 13.5600, 12),
           (54.4250, 13.5750, 30), (54.4000, 13.6100, 5)), 420, 14,
          uses=("tree-beech",), hours=3.0),
    Trail("ride-wadden-dike", "wadden-sea", "coast-rides", "easy",
          Text("Deichrunde bei Husum", "Round the dikes near Husum"),
          ("lowland", "day", "cycling", "#2f6fb5"),
          Issue(2022, 2, "2025.2"), ("beach", "windmill", "meadow"), ("circular", "paved", "family-friendly"),
          Text("Auf der einen Seite das Watt, auf der anderen Wiesen voller Schafe. Gatter müssen geöffnet "
               "und wieder geschlossen werden, und der Gegenwind gehört zur Landschaft.",
               "The tidal flats lie on one side, meadows full of sheep on the other. Gates have to be opened "
               "and closed again, and the headwind is part of the landscape."),
          ((54.4770, 9.0510, 3), (54.4920, 8.9800, 4), (54.4900, 8.9150, 5), (54.4680, 8.9100, 4), (54.4620, 8.9700, 3),
           (54.4770, 9.0510, 3)), 300, 2,
          uses=("sound-skylark",), hours=2.5),
    Trail("ride-spreewald", "spreewald", "family-rides", "easy",
          Text("Brücken und Fließe", "Bridges and channels"),
          ("lowland", "autumn", "cycling", "#c8903c"),
          Issue(2020, 3, "2025.1"), ("stream", "village", "meadow", "windmill"),
          ("circular", "family-friendly", "quiet"),
          Text("Eine Tagesrunde durch Wiesen, Erlenwälder und Dörfer mit Blockhäusern. Störche begleiten die "
               "Fahrt bis in den August, und an fast jeder Brücke gibt es eingelegte Gurken.",
               "A day's round through meadows, alder woods and villages of log houses. Storks keep the rider "
               "company until August, and pickled cucumbers are sold at nearly every bridge."),
          ((51.9380, 13.8920, 52), (51.9000, 14.0000, 53), (51.8350, 14.1450, 56), (51.8450, 14.0500, 54),
           (51.8650, 13.9670, 52), (51.9380, 13.8920, 52)), 480, 2,
          uses=("bird-white-stork",), hours=4.5),
    Trail("ride-eifel-railway", "eifel", "family-rides", "easy",
          Text("Auf alter Bahntrasse durch die Eifel", "On an old railway through the Eifel"),
          ("river", "autumn", "cycling", "#8f4f3f"),
          Issue(2021, 3, "2026.1"), ("forest", "bridge", "village"), ("paved", "family-friendly"),
          Text("Wo früher Züge fuhren, rollt man heute sanft bergab über hohe Viadukte und durch beleuchtete "
               "Tunnel. Ein Bus mit Anhänger bringt Räder und Gäste wieder hinauf.",
               "Where trains once ran, riders now roll gently downhill over high viaducts and through lit "
               "tunnels. A bus with a trailer takes bicycles and guests back up."),
          ((50.1980, 6.8300, 402), (50.1650, 6.8600, 415), (50.1280, 6.9050, 388), (50.0750, 6.9200, 300),
           (50.0300, 6.9050, 215), (49.9850, 6.8900, 168)), 380, 5,
          gear=("bicycle-lamp",), hours=3.0),
    Trail("ride-heath", "lueneburg-heath", "family-rides", "medium",
          Text("Abends durch die Heide", "Through the heath at dusk"),
          ("heath", "evening", "cycling", "#c8403c"),
          Issue(2022, 1, "2025.1"), ("heath", "forest", "moor"), ("quiet", "scenic"),
          Text("Am Abend gehört die Heide wieder den Rehen und Ziegenmelkern. Der Weg führt auf festem Sand "
               "zwischen Wacholdern hindurch; für die letzten Kilometer ist Licht nötig.",
               "In the evening the heath belongs to roe deer and nightjars again. The track leads on firm "
               "sand between junipers, and lights are needed for the last kilometres."),
          ((53.1170, 9.7950, 82), (53.1300, 9.8600, 96), (53.1520, 9.9250, 118), (53.1350, 9.9650, 94),
           (53.1080, 9.9850, 78), (53.0840, 9.9980, 74)), 320, 8,
          uses=("flower-heather", "sound-tawny-owl"), must_have=("bicycle-lamp",),
          without=("adj-family-friendly",), hours=2.0),
    Trail("ride-saxon-elbe", "saxon-switzerland", "river-rides", "easy",
          Text("Unter den Felsen der Elbe", "Below the rocks of the Elbe"),
          ("sandstone", "day", "cycling", "#2f6fb5"),
          Issue(2018, 6, "2026.1"), ("river", "rock", "castle"), ("paved", "scenic"),
          Text("Der Fluss hat sich tief in den Sandstein gegraben, und der Radweg folgt ihm ohne Mühe. "
               "Raddampfer und Fähren kreuzen, oben thront eine Festung auf ihrem Tafelberg.",
               "The river has cut deep into the sandstone, and the cycle track follows it without effort. "
               "Paddle steamers and ferries cross, and a fortress sits on its table mountain above."),
          ((50.9170, 14.1530, 122), (50.9270, 14.1100, 120), (50.9170, 14.0710, 119), (50.9420, 14.0450, 117),
           (50.9580, 14.0750, 116), (50.9500, 14.0100, 115), (50.9630, 13.9400, 114)), 260, 4,
          uses=("bird-grey-heron", "tree-willow"), hours=2.0),
    Trail("ride-isar-springs", "karwendel", "mountain-rides", "hard",
          Text("Zu den Quellen der Isar", "To the springs of the Isar"),
          ("alpine", "morning", "cycling", "#3f6f9f"),
          Issue(2021, 2, "2025.1"), ("river", "alp", "rock"), ("scenic", "quiet"),
          Text("Auf Schotter geht es durch ein langes, stilles Tal bis zu dem Kessel, in dem die Isar aus "
               "vielen Quellen entspringt. Der letzte Anstieg zur Alm ist steil und belohnt mit einem Blick "
               "auf die höchsten Wände des Karwendels.",
               "A gravel track climbs a long, silent valley to the basin where the Isar rises from many "
               "springs. The last ramp to the dairy is steep and rewards with a view of the highest walls of "
               "the Karwendel."),
          ((47.3890, 11.2640, 964), (47.3830, 11.3000, 1010), (47.3780, 11.3400, 1072), (47.3700, 11.3850, 1110),
           (47.3660, 11.4200, 1165), (47.3630, 11.4350, 1224)), 180, 15,
          uses=("bird-golden-eagle",), licence="personal", hours=2.5),
)
