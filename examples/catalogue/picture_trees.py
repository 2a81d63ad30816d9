"""Trees, each with the outline by which it is known from afar and its leaf in a round window."""

import math
import random
from dataclasses import dataclass
from typing import Sequence, Tuple

from picture_backdrops import backdrop
from picture_leaves import LEAVES
from svg import Drawing, darker, lighter, number, smooth


@dataclass(frozen=True)
class TreeLook:
    """How one kind of tree is drawn: its outline, its colours, its leaf."""
    outline: str
    crown: str
    trunk: str
    leaf: str
    leaf_colour: str
    scene: str = "meadow"
    dots: str = ""


def _trunk(drawing: Drawing, colour: str, top: float, width: float, branches: Sequence = ()) -> None:
    """A trunk from the ground at 0 up to `top`, with branches given as (y, x, y at the end)."""
    half = width / 2
    for start, x, y in branches:
        drawing.stroke(f"M0 {start} Q{number(x * 0.35)} {number((start + y) / 2)} {x} {y}", colour,
                       width * 0.42)
    drawing.path(f"M{-half * 1.9} 4 Q{-half} -20 {-half * 0.8} {top} L{half * 0.8} {top} "
                 f"Q{half} -20 {half * 1.9} 4 Q0 12 {-half * 1.9} 4 Z", colour)
    drawing.path(f"M{half * 0.1} {top} L{half * 0.8} {top} Q{half} -20 {half * 1.9} 4 "
                 f"Q{half} 9 {half * 0.4} 8 Z", darker(colour, 0.16))


def _tiers(drawing: Drawing, colour: str, top: float, bottom: float, half: float, count: int,
           droop: float, power: float = 1.0) -> None:
    """Storeys of drooping branches, each hiding the foot of the one above, with a dark side."""
    storeys = []
    for tier in range(count):
        low = top + (bottom - top) * (tier + 1) / count
        high = max(top, low - (bottom - top) / count * 2.1)
        reach = half * ((tier + 1) / count) ** power
        storeys.append((high, low, reach))
    for high, low, reach in reversed(storeys):
        scallops = 3 if reach > half * 0.45 else 2
        left, right = _hem(-reach, low, droop, scallops), _hem(reach, low, droop, scallops)
        drawing.path(f"M0 {number(high)} Q{number(-reach * 0.36)} {number(low - (low - high) * 0.3)} "
                     f"{left} L0 {number(low)} Z", colour)
        drawing.path(f"M0 {number(high)} Q{number(reach * 0.36)} {number(low - (low - high) * 0.3)} "
                     f"{right} L0 {number(low)} Z", darker(colour, 0.17))


def _hem(reach: float, low: float, droop: float, scallops: int) -> str:
    """The lower edge of a storey from its outer tip in to the trunk."""
    parts = [f"{number(reach)} {number(low + droop)}"]
    for index in range(scallops):
        start = reach * (1 - index / scallops)
        end = reach * (1 - (index + 1) / scallops)
        parts.append(f"Q{number((start + end) / 2)} {number(low - droop * 0.9)} {number(end)} "
                     f"{number(low + droop * (0.65 if index + 1 < scallops else 0.2))}")
    return " ".join(parts)


Ball = Tuple[float, float, float]


def _crown(drawing: Drawing, look: TreeLook, balls: Sequence[Ball], rng: random.Random) -> None:
    """A leafy crown of overlapping balls: dark underneath, bright towards the light."""
    for x, y, r in balls:
        drawing.circle(x + r * 0.12, y + r * 0.16, r, darker(look.crown, 0.2))
    for x, y, r in balls:
        drawing.circle(x, y, r * 0.97, look.crown)
    for x, y, r in balls:
        drawing.circle(x - r * 0.2, y - r * 0.24, r * 0.62, lighter(look.crown, 0.1))
    leaves = []
    for x, y, r in balls:
        for _ in range(max(3, round(r / 7))):
            angle, reach = rng.uniform(0, 2 * math.pi), r * rng.uniform(0.1, 0.85)
            px, py = x + reach * math.cos(angle), y + reach * math.sin(angle)
            leaves.append(f"M{number(px - 5)} {number(py)} q5 -6 10 0")
    drawing.stroke(" ".join(leaves), lighter(look.crown, 0.3), 2.6, opacity=0.75)
    if look.dots:
        for x, y, r in balls:
            for _ in range(round(r / 5)):
                angle, reach = rng.uniform(0, 2 * math.pi), r * rng.uniform(0.1, 0.9)
                drawing.circle(x + reach * math.cos(angle), y + reach * math.sin(angle),
                               rng.uniform(3.4, 5.4), look.dots)


def _spruce(drawing: Drawing, look: TreeLook, rng: random.Random) -> None:
    _trunk(drawing, look.trunk, -60, 20)
    _tiers(drawing, look.crown, -318, -34, 92, 8, 11)


def _fir(drawing: Drawing, look: TreeLook, rng: random.Random) -> None:
    _trunk(drawing, look.trunk, -70, 26)
    _tiers(drawing, look.crown, -312, -48, 108, 6, 3, 0.8)


def _larch(drawing: Drawing, look: TreeLook, rng: random.Random) -> None:
    """An open, feathery cone: soft storeys with hanging twigs that show as lighter strokes."""
    _trunk(drawing, look.trunk, -120, 20)
    _tiers(drawing, look.crown, -316, -46, 88, 10, 15, 0.9)
    for shade, side in ((lighter(look.crown, 0.3), -1), (lighter(look.crown, 0.14), 1)):
        twigs = []
        for tier in range(1, 10):
            for _ in range(tier + 1):
                x = side * rng.uniform(2, 8 + tier * 6.4)
                y = -296 + tier * 26 + rng.uniform(-6, 8) + abs(x) * 0.1
                twigs.append(f"M{number(x)} {number(y)} q{number(side * 4.0)} 5 {number(side * 3.0)} 13")
        drawing.stroke(" ".join(twigs), shade, 3.4)


def _pine(drawing: Drawing, look: TreeLook, rng: random.Random) -> None:
    _trunk(drawing, look.trunk, -250, 24, ((-190, -70, -232), (-206, 82, -246), (-150, 58, -180)))
    drawing.stroke("M-4 -60 v-30 M5 -110 v-26 M-3 -160 v-24", darker(look.trunk, 0.25), 3)
    for x, y, rx, ry in ((64, -186, 50, 20), (-78, -240, 66, 28), (88, -252, 62, 27), (-4, -284, 86, 36)):
        drawing.ellipse(x + 4, y + 9, rx, ry, darker(look.crown, 0.22))
        drawing.ellipse(x, y, rx, ry, look.crown)
        drawing.ellipse(x - rx * 0.16, y - ry * 0.3, rx * 0.66, ry * 0.5, lighter(look.crown, 0.13))


def _stone_pine(drawing: Drawing, look: TreeLook, rng: random.Random) -> None:
    _trunk(drawing, look.trunk, -230, 28, ((-90, 74, -112), (-130, -78, -150)))
    for x, y, r in ((-62, -110, 42), (66, -92, 40), (-56, -164, 50), (58, -150, 52), (-30, -220, 52),
                    (36, -214, 48), (0, -268, 44)):
        drawing.circle(x + 4, y + 7, r, darker(look.crown, 0.22))
        drawing.circle(x, y, r, look.crown)
        brush = []
        for _ in range(9):
            angle = rng.uniform(math.pi, 2 * math.pi)
            start = r * rng.uniform(0.2, 0.6)
            brush.append(f"M{number(x + start * math.cos(angle))} {number(y + start * math.sin(angle))} "
                         f"l{number(15 * math.cos(angle))} {number(15 * math.sin(angle))}")
        drawing.stroke(" ".join(brush), lighter(look.crown, 0.24), 3)


def _yew(drawing: Drawing, look: TreeLook, rng: random.Random) -> None:
    _trunk(drawing, look.trunk, -120, 34, ((-50, -50, -130), (-60, 50, -130)))
    _crown(drawing, look, ((-92, -84, 54), (92, -82, 54), (-58, -148, 66), (60, -150, 64), (0, -104, 62),
                           (0, -206, 66)), rng)


def _beech(drawing: Drawing, look: TreeLook, rng: random.Random) -> None:
    _trunk(drawing, look.trunk, -170, 30, ((-90, -80, -180), (-100, 84, -184)))
    _crown(drawing, look, ((-98, -152, 58), (100, -150, 58), (-62, -218, 66), (64, -220, 66), (0, -166, 70),
                           (0, -258, 66)), rng)


def _oak(drawing: Drawing, look: TreeLook, rng: random.Random) -> None:
    _trunk(drawing, look.trunk, -130, 46, ((-70, -120, -140), (-70, 124, -146), (-80, -50, -190)))
    _crown(drawing, look, ((-138, -146, 48), (140, -150, 48), (-96, -196, 56), (98, -198, 56),
                           (-40, -160, 52), (46, -158, 52), (-42, -238, 56), (44, -240, 54),
                           (0, -208, 56)), rng)


def _round(drawing: Drawing, look: TreeLook, rng: random.Random) -> None:
    _trunk(drawing, look.trunk, -150, 30, ((-90, -56, -160), (-90, 58, -164)))
    _crown(drawing, look, ((-76, -158, 56), (78, -156, 56), (0, -150, 62), (-66, -220, 58), (68, -220, 58),
                           (0, -212, 70), (0, -272, 50)), rng)


def _linden(drawing: Drawing, look: TreeLook, rng: random.Random) -> None:
    _trunk(drawing, look.trunk, -130, 30)
    _crown(drawing, look, ((-74, -112, 48), (76, -110, 48), (0, -108, 56), (-78, -168, 56),
                           (80, -166, 56), (0, -176, 70), (-46, -230, 52), (48, -230, 50),
                           (0, -278, 42)), rng)


def _slim(drawing: Drawing, look: TreeLook, rng: random.Random) -> None:
    """An egg-shaped crown high up, for trees of river banks and hedges."""
    _trunk(drawing, look.trunk, -200, 22, ((-110, -46, -160), (-130, 50, -180)))
    _crown(drawing, look, ((-48, -134, 42), (50, -138, 42), (0, -146, 50), (-50, -192, 46), (52, -194, 46),
                           (0, -216, 54), (-20, -262, 40), (22, -262, 38), (0, -292, 26)), rng)


def _poplar(drawing: Drawing, look: TreeLook, rng: random.Random) -> None:
    _trunk(drawing, look.trunk, -80, 22)
    _crown(drawing, look, ((-26, -74, 34), (28, -78, 34), (-30, -122, 38), (32, -126, 38), (0, -110, 40),
                           (-28, -172, 38), (30, -176, 36), (0, -200, 42), (-18, -228, 32),
                           (20, -230, 30), (0, -264, 30), (0, -298, 20)), rng)


def _birch(drawing: Drawing, look: TreeLook, rng: random.Random) -> None:
    _trunk(drawing, look.trunk, -280, 20, ((-150, -60, -236), (-170, 64, -246)))
    drawing.stroke("M-8 -24 h9 M0 -52 h9 M-8 -74 h7 M1 -96 h7 M-7 -118 h9 M-1 -146 h7", "#3b3a3c", 5)
    _crown(drawing, look, ((-58, -190, 44), (60, -194, 44), (0, -208, 52), (-40, -246, 42), (42, -248, 40),
                           (0, -288, 34)), rng)
    _strands(drawing, look, rng, ((-92, -180), (-70, -158), (-44, -150), (46, -152), (72, -160), (94, -184)),
             (40, 74))


def _strands(drawing: Drawing, look: TreeLook, rng: random.Random, starts, lengths) -> None:
    """Twigs that hang down under their own weight."""
    for index, (x, y) in enumerate(starts):
        length = rng.uniform(*lengths)
        sway = (1 if x > 0 else -1) * rng.uniform(2, 12)
        shade = (look.crown, lighter(look.crown, 0.12), darker(look.crown, 0.14))[index % 3]
        drawing.stroke(f"M{x} {y} q{number(sway)} {number(length * 0.5)} {number(sway * 0.4)} "
                       f"{number(length)}", shade, 8)


def _willow(drawing: Drawing, look: TreeLook, rng: random.Random) -> None:
    _trunk(drawing, look.trunk, -190, 36, ((-110, -80, -210), (-110, 84, -214)))
    balls = ((-74, -216, 52), (76, -216, 52), (0, -234, 62), (-40, -256, 44), (42, -256, 44))
    _crown(drawing, look, balls, rng)
    starts = [(x, -196 - 46 * math.cos(x / 126 * math.pi / 2)) for x in range(-124, 125, 13)]
    for spread in (0.8, 1.0):
        hanging = [(round(x * spread), round(y)) for x, y in starts]
        _strands(drawing, look, rng, hanging, (110, 186))


_OUTLINES = {
    "spruce": _spruce, "fir": _fir, "larch": _larch, "pine": _pine, "stone-pine": _stone_pine,
    "yew": _yew, "beech": _beech, "oak": _oak, "round": _round, "linden": _linden, "slim": _slim,
    "poplar": _poplar, "birch": _birch, "willow": _willow,
}


def tree_picture(look: TreeLook, seed: str) -> str:
    drawing = Drawing()
    rng = random.Random(f"tree {seed}")
    backdrop(drawing, look.scene, seed)
    ground = {"alps": "#6f9f6c", "winter": "#eef4f7", "autumn": "#bf9a58", "heath": "#86609a",
              "water": "#86b56c", "farm": "#b3a356"}.get(look.scene, "#6fa862")
    drawing.path(smooth([(60, 420), (110, 372), (240, 352), (380, 362), (470, 384), (520, 420)]), ground)
    drawing.ellipse(256, 364, 130, 13, darker(ground, 0.25), opacity=0.4)
    with drawing.group(move=(250, 360)):
        _OUTLINES[look.outline](drawing, look, rng)
    drawing.circle(516, 206, 88, "#ffffff", opacity=0.35)
    drawing.circle(516, 206, 78, "#fffdf6")
    with drawing.group(move=(516, 206), turn=12, scale=1.0):
        LEAVES[look.leaf](drawing, look.leaf_colour)
    return drawing.render()
