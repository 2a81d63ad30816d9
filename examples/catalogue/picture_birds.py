"""Birds, drawn from a handful of poses and a table of colours and marks.

A pose is drawn around the origin, looking to the right, about 300 units long. What makes it one
species is its `Look`: the colours of its parts and the marks that a field guide would point out.
"""

import random
from dataclasses import dataclass
from typing import Sequence, Tuple

from picture_backdrops import backdrop, reeds, twig
from svg import Drawing, darker, lighter, mix, number


@dataclass(frozen=True)
class Look:
    """How one species is drawn. Marks are (name, colour) pairs, painted in their order."""
    pose: str
    back: str
    breast: str
    belly: str = ""
    wing: str = ""
    tail: str = ""
    head: str = ""
    bill: str = "#4a4038"
    legs: str = "#8a6a52"
    eye: str = "#1d1a18"
    marks: Tuple[Tuple[str, str], ...] = ()
    bill_length: float = 40
    bill_depth: float = 18
    bill_bend: float = 0
    tail_length: float = 1.0
    tail_turn: float = 0
    size: float = 1.0

    def colour(self, part: str) -> str:
        """The colour of a part, or that of the larger part it belongs to."""
        own = getattr(self, part)
        return own or {"belly": self.breast, "wing": darker(self.back, 0.12),
                       "tail": darker(self.back, 0.2), "head": self.back}[part]


def _eye(drawing: Drawing, look: Look, x: float, y: float, radius: float = 8) -> None:
    drawing.circle(x, y, radius, look.eye)
    drawing.circle(x + radius * 0.3, y - radius * 0.32, radius * 0.32, "#ffffff")


# --- small birds on a branch ---------------------------------------------------------------

_BODY = ("M102 -66 C92 -104 38 -116 12 -84 C-6 -62 -44 -46 -78 4 C-98 34 -98 62 -84 74 "
         "C-40 104 46 98 80 36 C94 8 106 -34 102 -66 Z")
_FRONT = ("M103 -54 C104 -22 94 8 80 36 C46 98 -40 104 -84 74 C-40 76 10 40 34 2 "
          "C48 -20 74 -48 103 -54 Z")
_BELLY = "M70 52 C36 98 -40 104 -84 74 C-50 80 0 70 34 44 C48 36 62 40 70 52 Z"
_WING = ("M34 -26 C-8 -44 -58 -10 -84 26 C-104 52 -122 74 -142 92 C-96 92 -30 84 10 52 "
         "C38 28 52 -8 34 -26 Z")

_PERCHED_MARKS = {
    "crown": "M100 -80 C88 -108 38 -114 12 -84 C8 -78 2 -72 -4 -66 C22 -78 62 -88 100 -80 Z",
    "cap": "M103 -70 C96 -106 38 -116 12 -84 C4 -74 -6 -64 -14 -58 C18 -58 34 -70 52 -74 "
           "C70 -78 90 -76 103 -70 Z",
    "hood": "M103 -58 C104 -104 38 -118 10 -82 C0 -70 -12 -60 -22 -52 C10 -40 60 -28 88 -22 "
            "C98 -30 102 -44 103 -58 Z",
    "face": "M103 -62 C98 -84 78 -92 62 -84 C46 -74 44 -48 54 -34 C68 -18 92 -22 100 -34 "
            "C103 -44 104 -54 103 -62 Z",
    "mask": "M104 -66 C86 -74 48 -78 14 -66 C34 -54 74 -54 104 -60 Z",
    "cheek": "M96 -58 C82 -68 44 -66 36 -50 C32 -34 54 -22 72 -28 C86 -32 96 -44 96 -58 Z",
    "bib": "M103 -52 C90 -50 76 -40 74 -24 C80 -10 92 -8 97 -10 C101 -24 104 -40 103 -52 Z",
    "bellyline": "M97 -18 C90 -22 80 -18 74 -6 C62 26 40 60 6 92 C30 88 66 70 80 36 "
                 "C88 18 94 0 97 -18 Z",
    "wingpanel": "M-4 30 C-40 48 -84 64 -122 78 C-88 80 -36 74 4 46 C10 40 4 28 -4 30 Z",
}


def _perched_mark(drawing: Drawing, name: str, colour: str) -> None:
    if name in _PERCHED_MARKS:
        drawing.path(_PERCHED_MARKS[name], colour)
    elif name == "wingbars":
        drawing.stroke("M-44 -4 C-20 0 6 8 24 22", colour, 8)
        drawing.stroke("M-66 22 C-44 26 -20 34 -2 48", colour, 6)
    elif name == "wingbar":
        drawing.stroke("M-50 4 C-24 6 4 16 22 28", colour, 8)
    elif name == "quills":
        drawing.stroke("M-118 84 C-80 74 -50 58 -28 42 M-96 88 C-62 80 -34 68 -10 54 "
                       "M-106 68 C-80 54 -64 42 -48 28", colour, 3, opacity=0.8)
    elif name == "streaks":
        spots = [(70, 4), (54, 18), (72, 28), (36, 34), (56, 44), (20, 54), (40, 64), (84, -12)]
        drawing.stroke(" ".join(f"M{x} {y} l-5 11" for x, y in spots), colour, 5)
    elif name == "backstreaks":
        spots = [(-10, -50), (-34, -32), (8, -62), (-56, -10), (0, -18), (-30, 4), (20, 0),
                 (-56, 26), (-10, 24), (-82, 48)]
        drawing.stroke(" ".join(f"M{x} {y} l-16 12" for x, y in spots), colour, 5)
    elif name == "bars":
        drawing.stroke("M86 18 C66 24 44 24 30 14 M80 36 C56 44 30 44 10 34 "
                       "M68 56 C44 66 10 64 -14 54 M46 76 C20 84 -14 82 -42 70", colour, 5)
    elif name == "eyebrow":
        drawing.stroke("M96 -82 C74 -92 44 -88 22 -70", colour, 6)
    elif name == "eyestripe":
        drawing.stroke("M104 -64 C84 -70 50 -70 14 -58", colour, 8)
    elif name == "eyering":
        drawing.circle(70, -72, 13, colour)
    elif name == "whisker":
        drawing.path("M98 -50 C88 -44 74 -38 62 -22 C74 -20 92 -26 98 -50 Z", colour)
    elif name == "bluepatch":
        drawing.path("M6 4 C-16 -6 -40 2 -52 16 C-30 20 -8 28 10 40 C18 26 18 10 6 4 Z", colour)
        drawing.stroke("M-2 10 l-10 22 M-16 6 l-10 18 M-30 8 l-8 12", "#2b3f66", 3)
    elif name == "spots":
        for x, y in ((-20, -6), (2, -10), (-40, 14), (-14, 14), (10, 8), (-60, 36), (-34, 36),
                     (-6, 34), (20, 26)):
            drawing.circle(x, y, 4.5, colour)
    else:
        raise ValueError(f"no such mark on a perched bird: {name}")


def _crest(drawing: Drawing, kind: str, colour: str) -> None:
    """Crests rise behind the head, so they are drawn before the body."""
    if kind == "fan":
        for turn, reach in ((-62, 92), (-44, 104), (-26, 108), (-8, 104), (10, 94)):
            with drawing.group(move=(48, -84), turn=turn):
                drawing.path(f"M-9 0 Q-14 {-reach * 0.6} 0 {-reach} Q14 {-reach * 0.6} 9 0 Z",
                             colour)
                drawing.path(f"M-7 {-reach * 0.84} Q0 {-reach * 1.16} 7 {-reach * 0.84} "
                             f"Q0 {-reach * 0.74} -7 {-reach * 0.84} Z", "#2c2622")
    elif kind == "tuft":
        drawing.path("M66 -100 C46 -112 24 -126 2 -122 C16 -112 20 -98 26 -86 Z", colour)


def _perched(drawing: Drawing, look: Look) -> None:
    for name, colour in look.marks:
        if name.startswith("crest-"):
            _crest(drawing, name[len("crest-"):], colour)
    with drawing.group(move=(-76, 52), turn=look.tail_turn):
        end = -118 * look.tail_length
        drawing.path(f"M12 -26 L{number(end)} {number(22)} Q{number(end - 14)} 40 "
                     f"{number(end + 10)} 46 L16 22 Z", look.colour("tail"))
        drawing.stroke(f"M0 2 L{number(end + 4)} 36", darker(look.colour("tail"), 0.3), 3,
                       opacity=0.7)
    drawing.stroke("M8 84 L14 122 M34 76 L42 120", look.legs, 6)
    drawing.stroke("M4 122 H26 M32 120 H54", look.legs, 6)
    bill = look.bill_length
    tip_y = -58 + look.bill_bend
    drawing.path(f"M92 {-62 - look.bill_depth / 2} Q{number(104 + bill * 0.4)} "
                 f"{number(-62 - look.bill_depth * 0.45)} {number(100 + bill)} {number(tip_y)} "
                 f"Q{number(104 + bill * 0.4)} {number(-60 + look.bill_depth * 0.5)} "
                 f"92 {-56 + look.bill_depth / 2} Z", look.bill)
    drawing.path(_BODY, look.back)
    drawing.path(_FRONT, look.breast)
    if look.belly:
        drawing.path(_BELLY, look.belly)
    if look.head:
        drawing.path(_PERCHED_MARKS["hood"], look.head)
    late = ("wingbars", "wingbar", "wingpanel", "quills", "bluepatch", "spots")
    for name, colour in look.marks:
        if name not in late and not name.startswith("crest-"):
            _perched_mark(drawing, name, colour)
    drawing.path(_WING, look.colour("wing"))
    for name, colour in look.marks:
        if name in late:
            _perched_mark(drawing, name, colour)
    drawing.stroke("M-142 92 C-96 92 -30 84 10 52 C24 41 35 28 40 14",
                   darker(look.colour("wing"), 0.35), 3, opacity=0.45)
    _eye(drawing, look, 70, -72)


# --- other poses ---------------------------------------------------------------------------

def _clinging(drawing: Drawing, look: Look) -> None:
    """Upright against a trunk on its right, as a woodpecker climbs."""
    drawing.path("M-42 108 L-30 196 Q-10 204 0 190 L16 112 Z", look.colour("tail"))
    drawing.path("M30 -118 L92 -128 L34 -98 Z", look.bill)
    drawing.path("M36 -128 C20 -158 -30 -158 -46 -122 C-70 -80 -84 -10 -66 60 "
                 "C-58 98 -40 124 -12 124 C30 116 62 50 54 -22 C50 -60 48 -96 36 -128 Z", look.breast)
    drawing.path("M-20 -146 C-38 -142 -48 -122 -52 -108 C-76 -60 -84 6 -64 66 C-52 106 -38 124 "
                 "-14 124 C0 90 -6 40 -10 -6 C-12 -50 -30 -70 -30 -96 Z", look.back)
    drawing.path("M38 -122 C22 -160 -34 -160 -48 -116 C-30 -128 0 -132 38 -122 Z", look.back)
    for name, colour in look.marks:
        if name == "nape":
            drawing.path("M-46 -122 C-56 -110 -60 -92 -60 -80 L-34 -84 C-36 -100 -40 -112 -46 -122 Z",
                         colour)
        elif name == "undertail":
            drawing.path("M-14 124 C6 122 30 100 42 66 C22 70 -2 86 -26 116 Z", colour)
        elif name == "shoulder":
            drawing.path("M-46 -52 C-30 -58 -20 -40 -18 -10 C-18 16 -24 34 -34 40 C-50 20 -56 -30 "
                         "-46 -52 Z", colour)
        elif name == "bars":
            drawing.stroke("M-60 54 L-14 66 M-56 74 L-12 84 M-48 94 L-12 100", colour, 6)
        elif name == "stripe":
            drawing.path("M40 -104 C24 -98 4 -92 -14 -76 C-22 -66 -30 -70 -32 -86 L-18 -90 "
                         "C2 -104 22 -108 40 -112 Z", colour)
            drawing.path("M-12 -82 C4 -70 22 -58 34 -40 C14 -46 -6 -56 -20 -66 Z", colour)
    drawing.stroke("M44 10 L76 -4 M46 36 L78 30", look.legs, 6)
    drawing.stroke("M76 -18 V10 M78 16 V44", look.legs, 6)
    _eye(drawing, look, 8, -122, 8)


def _owl(drawing: Drawing, look: Look) -> None:
    drawing.path("M-40 120 L-30 176 Q0 190 30 176 L40 120 Z", look.colour("tail"))
    drawing.path("M0 -136 C72 -140 104 -92 100 -30 C98 60 62 140 0 142 C-62 140 -98 60 -100 -30 "
                 "C-104 -92 -72 -140 0 -136 Z", look.back)
    drawing.path("M0 -20 C50 -18 68 20 62 60 C54 112 28 138 0 138 C-28 138 -54 112 -62 60 "
                 "C-68 20 -50 -18 0 -20 Z", look.breast)
    for x, y in ((-30, 30), (0, 22), (30, 30), (-42, 58), (-15, 54), (15, 54), (42, 58), (-30, 86),
                 (0, 82), (30, 86), (-14, 112), (14, 112)):
        drawing.stroke(f"M{x} {y} v12", darker(look.back, 0.15), 5)
    for side in (-1, 1):
        drawing.path(f"M{side * 96} -50 C{side * 118} 10 {side * 104} 92 {side * 60} 128 "
                     f"C{side * 74} 70 {side * 66} 10 {side * 96} -50 Z", look.colour("wing"))
        for y in (0, 32, 64):
            drawing.circle(side * 88, y, 5, lighter(look.back, 0.45))
    for side in (-1, 1):
        drawing.circle(side * 38, -68, 50, look.colour("head"))
    drawing.path("M0 -122 C16 -104 16 -84 0 -58 C-16 -84 -16 -104 0 -122 Z", look.back)
    for side in (-1, 1):
        drawing.circle(side * 38, -68, 36, lighter(look.colour("head"), 0.35))
        drawing.circle(side * 36, -68, 23, "#2a2320")
        drawing.circle(side * 36 + 7, -76, 7, "#ffffff")
    drawing.path("M-11 -58 Q0 -68 11 -58 Q8 -34 0 -26 Q-8 -34 -11 -58 Z", look.bill)
    drawing.stroke("M-34 142 v14 M-22 144 v14 M22 144 v14 M34 142 v14", look.legs, 8)


def _soaring(drawing: Drawing, look: Look) -> None:
    """Wide wings seen from below, with the fingered tips of a bird that circles."""
    for side in (-1, 1):
        with drawing.group(mirror=side < 0):
            fingers = ((232, -96, -34), (252, -74, -24), (260, -48, -12), (254, -22, 0),
                       (240, 0, 12))
            for x, y, turn in fingers:
                with drawing.group(move=(x - 58, y + 14), turn=turn):
                    drawing.path("M-20 -11 Q40 -16 78 0 Q40 12 -20 11 Z", darker(look.back, 0.3))
            drawing.path("M10 -40 C60 -92 130 -112 214 -92 C226 -60 222 -20 206 12 "
                         "C150 20 80 26 16 44 Z", look.colour("wing"))
            drawing.path("M10 -40 C60 -92 130 -112 214 -92 C216 -82 216 -76 216 -70 "
                         "C150 -66 70 -40 12 -6 Z", look.back)
            drawing.stroke("M70 22 L60 -12 M110 16 L104 -26 M150 12 L148 -38 M188 8 L188 -48",
                           darker(look.back, 0.25), 3, opacity=0.55)
    drawing.path("M-22 56 L-56 128 Q0 150 56 128 L22 56 Z", look.colour("tail"))
    for name, colour in look.marks:
        if name == "tailband":
            drawing.path("M-50 114 L-56 128 Q0 150 56 128 L50 114 Q0 134 -50 114 Z", colour)
    drawing.path("M0 -96 C30 -92 38 -40 34 4 C32 50 18 78 0 80 C-18 78 -32 50 -34 4 "
                 "C-38 -40 -30 -92 0 -96 Z", look.breast)
    drawing.path("M-27 -60 C-28 -96 -14 -112 0 -112 C14 -112 28 -96 27 -60 C12 -50 -12 -50 -27 -60 Z",
                 look.colour("head"))
    for name, colour in look.marks:
        if name == "streaks":
            drawing.stroke("M-14 -34 v14 M10 -38 v14 M-4 -10 v14 M16 -6 v14 M-18 8 v14 M6 20 v14",
                           colour, 5)
    drawing.path("M-8 -108 Q0 -136 8 -108 Z", look.bill)
    for side in (-1, 1):
        drawing.circle(side * 15, -92, 4.5, look.eye)


def _flying(drawing: Drawing, look: Look) -> None:
    """A slim bird with sickle wings and a forked tail, banking."""
    drawing.path("M-70 24 C-120 44 -160 58 -232 60 C-180 42 -150 34 -128 22 C-160 20 -190 14 -226 0 "
                 "C-170 0 -110 -8 -66 -4 Z", look.colour("tail"))
    drawing.path("M30 -12 C-10 -80 -70 -136 -160 -160 C-150 -110 -120 -50 -50 6 Z",
                 darker(look.back, 0.18))
    drawing.path("M128 -10 C116 -36 76 -44 40 -30 C-10 -18 -60 -8 -86 14 C-60 40 10 50 60 34 "
                 "C96 24 122 10 128 -10 Z", look.back)
    drawing.path("M126 0 C110 16 90 26 60 34 C10 50 -60 40 -86 14 C-40 22 40 24 126 0 Z", look.breast)
    for name, colour in look.marks:
        if name == "face":
            drawing.path("M130 -8 C116 -14 98 -6 92 8 C98 22 116 14 130 -2 Z", colour)
            drawing.path("M128 -12 C120 -26 108 -32 100 -32 C102 -22 114 -12 128 -12 Z", colour)
        elif name == "band":
            drawing.path("M92 4 C96 12 92 20 84 24 L76 26 C82 18 86 10 86 2 Z", colour)
    drawing.path("M126 -14 L150 -2 L126 4 Z", look.bill)
    drawing.path("M44 -4 C20 40 10 110 -60 172 C-76 110 -60 40 -20 4 Z", look.colour("wing"))
    drawing.stroke("M-52 160 C-50 110 -40 60 -8 14 M-30 132 C-24 90 -10 50 14 14",
                   darker(look.colour("wing"), 0.3), 3, opacity=0.7)
    _eye(drawing, look, 106, -14, 7)


def _stork(drawing: Drawing, look: Look) -> None:
    """Long legs, long neck, straight bill. Herons and cranes stand the same way."""
    drawing.stroke("M-10 60 L-14 176 M22 58 L30 112 L22 176", look.legs, 8)
    drawing.stroke("M-28 178 H4 M8 178 H40", look.legs, 7)
    if any(name == "bustle" for name, _ in look.marks):
        drawing.path("M-40 -20 C-110 -30 -150 20 -156 84 C-130 60 -120 64 -112 88 C-98 62 -84 60 "
                     "-74 84 C-60 50 -30 40 -10 30 Z", darker(look.back, 0.35))
    neck = "M64 -12 C96 -40 60 -84 82 -132" if look.pose == "stork" else \
        "M66 -6 C112 -40 40 -76 78 -138"
    drawing.path("M90 10 C80 62 0 84 -60 66 C-96 56 -124 44 -150 34 C-110 4 -60 -34 6 -40 "
                 "C54 -44 94 -30 90 10 Z", look.breast)
    drawing.stroke(neck, look.colour("head"), 32)
    drawing.circle(84, -140, 26, look.colour("head"))
    drawing.path("M-40 4 C0 -26 50 -22 60 0 C40 40 -30 62 -84 60 C-120 56 -150 46 -176 36 "
                 "C-120 36 -70 26 -40 4 Z", look.back)
    drawing.path("M-176 36 C-140 40 -80 36 -30 20 C-40 40 -60 56 -84 60 C-120 58 -156 48 -176 36 Z",
                 look.colour("wing"))
    drawing.path(f"M98 -156 L{number(104 + look.bill_length)} -124 L98 -128 Z", look.bill)
    for name, colour in look.marks:
        if name == "plume":
            drawing.path("M104 -156 C84 -168 60 -160 50 -146 C30 -142 10 -132 0 -112 C30 -128 60 -132 "
                         "80 -142 Z", colour)
        elif name == "crown":
            drawing.path("M92 -165 C78 -170 62 -160 59 -146 C70 -152 84 -154 96 -150 Z", colour)
        elif name == "throat":
            drawing.path("M106 -132 C96 -114 90 -96 86 -70 C76 -80 72 -104 82 -134 Z", colour)
        elif name == "neckstripe":
            drawing.stroke("M74 -116 C68 -96 84 -70 82 -48", colour, 5, stroke_dasharray="10 12")
    _eye(drawing, look, 90, -146, 6)


def _duck(drawing: Drawing, look: Look) -> None:
    drawing.path("M-150 -20 C-120 -34 -90 -24 -70 -16 L-70 30 C-110 24 -140 8 -150 -20 Z",
                 look.colour("tail"))
    drawing.path("M-104 -8 C-60 -44 30 -40 70 -10 C108 10 116 40 100 66 H-92 C-126 50 -124 10 -104 -8 Z",
                 look.belly or look.breast)
    drawing.path("M66 -22 C110 -10 128 30 108 66 H48 C30 40 40 -20 66 -22 Z", look.breast)
    drawing.path("M-96 -4 C-50 -36 30 -30 52 4 C30 36 -40 44 -84 36 C-110 30 -112 10 -96 -4 Z",
                 look.colour("wing"))
    for name, colour in look.marks:
        if name == "speculum":
            drawing.path("M-52 18 C-30 30 0 30 24 22 L16 36 C-10 42 -40 40 -60 32 Z", colour)
            drawing.stroke("M-52 18 C-30 30 0 30 24 22", "#ffffff", 4)
        elif name == "curl":
            drawing.stroke("M-112 -14 C-128 -40 -104 -56 -94 -40", colour, 7)
    drawing.path("M54 0 C50 -40 50 -70 56 -92 C64 -128 122 -134 136 -96 C142 -72 130 -54 116 -44 "
                 "C112 -24 120 -10 122 4 C100 16 70 12 54 0 Z", look.colour("head"))
    for name, colour in look.marks:
        if name == "collar":
            drawing.stroke("M56 -6 C76 6 102 6 120 -4", colour, 9)
    drawing.path("M130 -88 C150 -92 178 -82 186 -68 C180 -58 150 -56 130 -62 Z", look.bill)
    _eye(drawing, look, 108, -92, 8)


_POSES = {"perched": _perched, "clinging": _clinging, "owl": _owl, "soaring": _soaring,
          "flying": _flying, "stork": _stork, "heron": _stork, "duck": _duck}


def bird(drawing: Drawing, look: Look) -> None:
    """Draws the bird alone, around the origin."""
    _POSES[look.pose](drawing, look)


# --- what the bird sits on -----------------------------------------------------------------

_TWIGS = {
    "garden": ("#8a6650", "#6fae6b"), "wood": ("#765440", "#4f9155"),
    "meadow": ("#93744f", "#86b356"), "farm": ("#8a6650", "#c7a24a"),
    "autumn": ("#7d5a45", "#d98a43"), "winter": ("#6f5d55", "#8fb3a0"),
    "water": ("#7c6349", "#7fae5e"), "alps": ("#7c7a78", "#8bb06f"),
    "night": ("#4a3b45", "#56707c"), "heath": ("#7d6052", "#a9b36a"), "shade": ("#3f3a34", "#a7cf84"),
}


def _perch(drawing: Drawing, scene: str, rng: random.Random) -> None:
    wood, green = _TWIGS[scene]
    if scene == "alps":
        drawing.path("M130 400 C150 350 190 330 240 318 C300 306 360 306 410 320 C470 334 510 366 "
                     "530 400 Z", "#8d979f")
        drawing.path("M240 318 C300 306 360 306 410 320 C380 330 350 344 300 340 C270 338 250 330 "
                     "240 318 Z", "#b3bdc2")
        return
    if scene == "winter":
        twig(drawing, [(-10, 356), (160, 322), (330, 318), (500, 330), (650, 300)], wood, 13, [], green)
        drawing.stroke("M20 343 C120 320 230 306 330 308 C420 312 500 322 640 294", "#ffffff", 9)
        return
    leaves = []
    for x, y, direction in ((92, 330, -120), (128, 326, 110), (196, 322, 130), (470, 318, -60),
                            (520, 312, 60), (572, 300, -70), (604, 292, 40), (430, 320, 70)):
        leaves.append((x, y, direction + rng.uniform(-14, 14), rng.uniform(44, 64)))
    twig(drawing, [(-10, 352), (140, 326), (330, 319), (490, 318), (650, 280)], wood, 13, leaves, green)


def bird_picture(look: Look, scene: str, seed: str) -> str:
    """A guide's picture: the bird in its surroundings."""
    drawing = Drawing()
    rng = random.Random(f"bird {seed}")
    backdrop(drawing, scene, seed)
    if look.pose == "perched":
        _perch(drawing, scene, rng)
        with drawing.group(move=(312, 190 + 122 * (1.08 - look.size * 1.08)), scale=1.08 * look.size):
            bird(drawing, look)
    elif look.pose == "clinging":
        drawing.path("M412 -10 H520 C508 120 512 260 530 410 H398 C410 260 406 120 412 -10 Z", "#8b6b52")
        drawing.path("M470 -10 H520 C508 120 512 260 530 410 H486 C474 260 476 120 470 -10 Z", "#75573f")
        drawing.stroke("M430 30 C426 70 430 110 428 150 M448 190 C444 240 450 280 446 340 "
                       "M492 60 C488 120 494 160 490 230 M424 270 C422 310 424 350 420 390",
                       "#5f4636", 4, opacity=0.6)
        with drawing.group(move=(322, 196), scale=1.06):
            bird(drawing, look)
    elif look.pose == "owl":
        with drawing.group(move=(332, 176), scale=0.98 * look.size):
            bird(drawing, look)
        twig(drawing, [(-10, 352), (180, 330), (340, 334), (520, 322), (650, 292)], "#54424a", 18,
             [(90, 340, -110, 56), (140, 334, 100, 50), (520, 320, -60, 58), (580, 306, 60, 50)], "#5f7f80")
    elif look.pose == "duck":
        with drawing.group(move=(306, 236), scale=1.28):
            bird(drawing, look)
        drawing.path("M150 318 H470 C440 344 380 352 310 352 C240 352 180 344 150 318 Z",
                     darker("#5ea9c4", 0.18), opacity=0.45)
        drawing.stroke("M120 324 H500 M170 342 H450 M220 358 H400", "#d8f1f4", 4, opacity=0.85)
    elif look.pose in ("stork", "heron"):
        with drawing.group(move=(306, 204), scale=1.02):
            bird(drawing, look)
        if scene == "water":
            drawing.stroke("M250 384 H380 M220 394 H420", "#d8f1f4", 4, opacity=0.85)
            reeds(drawing, 120, 410, 130, "#5f8f50", "#8a5a36")
        else:
            drawing.path("M180 404 Q250 372 318 376 Q400 372 470 404 Z", "#7fb567")
    elif look.pose == "soaring":
        with drawing.group(move=(322, 186), scale=0.96, turn=-10):
            bird(drawing, look)
    else:
        with drawing.group(move=(336, 196), scale=1.12, turn=-10):
            bird(drawing, look)
    return drawing.render()


def sound_picture(look: Look, colours: Tuple[str, str], levels: Sequence[float]) -> str:
    """A recording's picture: the bird on a disc before the shape of its own sound.

    `levels` are the loudness of the recording from start to end, between 0 and 1.
    """
    drawing = Drawing()
    deep, light = colours
    drawing.fill(drawing.slanted(deep, mix(deep, light, 0.45)))
    for radius, opacity in ((330, 0.07), (262, 0.09), (196, 0.12)):
        drawing.circle(210, 176, radius, light, opacity=opacity)
    step = 600 / len(levels)
    for index, level in enumerate(levels):
        height = 10 + level * 150
        x = 20 + index * step + step / 2
        warm = mix(light, "#fff3c9", 0.6)
        drawing.rect(x - step * 0.3, 312 - height / 2, step * 0.6, height, warm,
                     rx=number(step * 0.3), opacity=0.35 + 0.6 * level)
    drawing.circle(210, 172, 140, drawing.vertical(lighter(light, 0.55), lighter(light, 0.2)))
    size = {"perched": 0.74, "clinging": 0.62, "owl": 0.72, "soaring": 0.46, "flying": 0.58,
            "stork": 0.64, "heron": 0.64, "duck": 0.66}[look.pose]
    shift = {"perched": (208, 178), "clinging": (206, 164), "owl": (210, 172), "soaring": (210, 172),
             "flying": (226, 170), "stork": (206, 182), "heron": (206, 182), "duck": (204, 180)}
    with drawing.group(move=shift[look.pose], scale=size):
        bird(drawing, look)
    if look.pose == "perched":
        drawing.stroke("M102 274 C160 264 260 264 318 270", darker(deep, 0.2), 11)
    for index in range(3):
        reach = 30 + index * 26
        drawing.stroke(f"M{372 + index * 24} {number(150 - reach)} Q{392 + index * 34} 150 "
                       f"{372 + index * 24} {number(150 + reach)}", "#fff3c9", 7,
                       opacity=0.85 - index * 0.22)
    return drawing.render()
