"""Flowers, drawn by the way they are built: rayed heads, cups, bells, spikes and stars."""

import math
import random
from dataclasses import dataclass
from typing import Sequence, Tuple

from picture_backdrops import backdrop, ray_points
from svg import Drawing, Point, darker, lighter, mix, number, smooth


@dataclass(frozen=True)
class FlowerLook:
    """How one kind of flower is drawn. What `petals` counts depends on the form."""
    form: str
    petal: str
    heart: str
    petals: int = 5
    leaf: str = "lance"
    leaf_colour: str = "#5f9a55"
    scene: str = "meadow"
    petal_width: float = 1.0
    petal_tip: str = "round"


def _petal(length: float, width: float, tip: str) -> str:
    """Path data of one petal that points to the right of the origin."""
    half = width / 2
    if tip == "pointed":
        return (f"M0 0 C{number(length * 0.3)} {number(-half * 1.25)} {number(length * 0.75)} "
                f"{number(-half)} {number(length)} 0 C{number(length * 0.75)} {number(half)} "
                f"{number(length * 0.3)} {number(half * 1.25)} 0 0 Z")
    if tip == "notched":
        return (f"M0 0 C{number(length * 0.3)} {number(-half * 1.1)} {number(length * 0.9)} "
                f"{number(-half * 1.5)} {number(length)} {number(-half * 0.4)} "
                f"L{number(length * 0.9)} 0 L{number(length)} {number(half * 0.4)} "
                f"C{number(length * 0.9)} {number(half * 1.5)} {number(length * 0.3)} "
                f"{number(half * 1.1)} 0 0 Z")
    if tip == "fringed":
        return (f"M0 0 L{number(length * 0.72)} {number(-half)} L{number(length * 0.86)} "
                f"{number(-half * 0.5)} L{number(length)} {number(-half * 0.75)} "
                f"L{number(length * 0.9)} 0 L{number(length)} {number(half * 0.75)} "
                f"L{number(length * 0.86)} {number(half * 0.5)} L{number(length * 0.72)} "
                f"{number(half)} Z")
    return (f"M0 0 C{number(length * 0.25)} {number(-half * 1.15)} {number(length)} "
            f"{number(-half * 1.35)} {number(length)} 0 C{number(length)} {number(half * 1.35)} "
            f"{number(length * 0.25)} {number(half * 1.15)} 0 0 Z")


def _ring(drawing: Drawing, look: FlowerLook, count: int, length: float, width: float, colour: str,
          start: float = -90, crease: bool = True) -> None:
    for index, (_, _, angle) in enumerate(ray_points(count, 1, start)):
        with drawing.group(turn=angle):
            drawing.path(_petal(length, width, look.petal_tip),
                         lighter(colour, 0.1) if index % 2 else colour)
            if crease:
                drawing.stroke(f"M{number(length * 0.28)} 0 L{number(length * 0.72)} 0",
                               darker(colour, 0.14), 2, opacity=0.6)


def _disc(drawing: Drawing, colour: str, radius: float) -> None:
    drawing.circle(0, 0, radius, darker(colour, 0.16))
    drawing.circle(-radius * 0.06, -radius * 0.08, radius * 0.86, colour)
    for ring, count in ((0.3, 5), (0.6, 10)):
        for x, y, _ in ray_points(count, radius * ring, ring * 100):
            drawing.circle(x, y, radius * 0.09, lighter(colour, 0.4))


# --- flower heads, around the origin, about 200 across -------------------------------------

def _rayed(drawing: Drawing, look: FlowerLook) -> None:
    """Two rings of petals round a disc, as in daisies and many others."""
    length = 100.0
    width = min(92.0, 2 * math.pi * 62 / look.petals * 1.12) * look.petal_width
    if look.petals > 9:
        _ring(drawing, look, look.petals, length, width, darker(look.petal, 0.12),
              -90 + 180 / look.petals, False)
    _ring(drawing, look, look.petals, length, width, look.petal)
    _disc(drawing, look.heart, 30 if look.petals > 9 else 22)


def _tousled(drawing: Drawing, look: FlowerLook) -> None:
    """Many layers of narrow petals, as in dandelions."""
    for layer, (length, share) in enumerate(((100, 0.0), (84, 0.12), (66, 0.24), (46, 0.36))):
        _ring(drawing, look, look.petals - layer * 3, length, 18 * look.petal_width,
              mix(look.petal, look.heart, share), -90 + layer * 9, False)
    drawing.circle(0, 0, 22, look.heart)


def _cornflower(drawing: Drawing, look: FlowerLook) -> None:
    _ring(drawing, look, look.petals, 106, 58, look.petal)
    for _, _, angle in ray_points(14, 1, -80):
        with drawing.group(turn=angle):
            drawing.path("M8 -4 L50 -5 L44 0 L50 5 L8 4 Z", look.heart)
    drawing.circle(0, 0, 18, darker(look.heart, 0.3))


def _edelweiss(drawing: Drawing, look: FlowerLook) -> None:
    for index, (_, _, angle) in enumerate(ray_points(look.petals, 1)):
        length = 108 if index % 2 else 86
        with drawing.group(turn=angle):
            drawing.path(_petal(length, 42, "pointed"), darker(look.petal, 0.1 if index % 2 else 0.03))
            drawing.path(_petal(length * 0.84, 26, "pointed"), lighter(look.petal, 0.5))
    for x, y, _ in ray_points(5, 22) + [(0, 0, 0)]:
        drawing.circle(x, y, 13, darker(look.heart, 0.2))
        drawing.circle(x, y, 11, look.heart)
        drawing.circle(x, y, 4.5, lighter(look.heart, 0.45))


def _bowl(drawing: Drawing, look: FlowerLook) -> None:
    """Four broad, crumpled petals with a dark eye, as in poppies."""
    for turn, shade in ((-45, 0.14), (135, 0.14), (45, 0.0), (225, 0.0)):
        with drawing.group(turn=turn):
            colour = darker(look.petal, shade)
            drawing.path("M0 0 C-30 -30 -84 -40 -88 -78 C-60 -112 -20 -96 0 -108 C20 -96 60 -112 88 -78 "
                         "C84 -40 30 -30 0 0 Z", colour)
            drawing.stroke("M0 -36 V-84 M-18 -40 L-40 -80 M18 -40 L40 -80", darker(colour, 0.14), 2.5,
                           opacity=0.6)
            drawing.path("M0 -6 C-22 -18 -22 -42 0 -50 C22 -42 22 -18 0 -6 Z", darker(look.heart, 0.2))
    for x, y, _ in ray_points(16, 30):
        drawing.stroke(f"M0 0 L{number(x)} {number(y)}", look.heart, 2.5)
        drawing.circle(x, y, 3.6, look.heart)
    drawing.circle(0, 0, 16, "#8fae6a")
    for x, y, _ in ray_points(8, 13):
        drawing.stroke(f"M0 0 L{number(x)} {number(y)}", "#5f7d44", 2)


def _trumpet(drawing: Drawing, look: FlowerLook) -> None:
    """A deep tube with five lobes round its mouth, seen at a slant, as in gentians."""
    drawing.path("M-52 4 C-44 60 -26 116 -14 138 H14 C26 116 44 60 52 4 Z",
                 drawing.vertical(look.petal, darker(look.petal, 0.35)))
    drawing.stroke("M-26 30 L-12 120 M0 34 V126 M26 30 L12 120", darker(look.petal, 0.35), 4, opacity=0.5)
    for x, y, angle in ray_points(5, 1):
        squeeze = 0.72
        tip = (math.cos(math.radians(angle)) * 104, math.sin(math.radians(angle)) * 104 * squeeze)
        left = (math.cos(math.radians(angle - 34)) * 70, math.sin(math.radians(angle - 34)) * 70 * squeeze)
        right = (math.cos(math.radians(angle + 34)) * 70,
                 math.sin(math.radians(angle + 34)) * 70 * squeeze)
        drawing.path(f"M0 0 L{number(left[0])} {number(left[1])} Q{number(tip[0] * 0.92)} "
                     f"{number(tip[1] * 0.82)} {number(tip[0])} {number(tip[1])} "
                     f"Q{number(tip[0] * 0.92 + x)} {number(tip[1] * 0.82)} {number(right[0])} "
                     f"{number(right[1])} Z", look.petal if y < 0.4 else lighter(look.petal, 0.1))
    drawing.ellipse(0, 0, 44, 31, darker(look.petal, 0.4))
    drawing.ellipse(0, 5, 34, 22, darker(look.petal, 0.6))
    for x, y, _ in ray_points(10, 34):
        drawing.circle(x, y * 0.7, 3, look.heart)
    drawing.circle(0, 2, 7, look.heart)


def _chalice(drawing: Drawing, look: FlowerLook) -> None:
    """An upright cup on a pale tube, as in crocuses."""
    drawing.path("M-11 170 C-8 120 -14 84 -30 56 H30 C14 84 8 120 11 170 Z", lighter(look.petal, 0.6))
    for turn, length, width, shade in ((-20, 168, 74, 0.2), (20, 168, 74, 0.2), (0, 172, 70, 0.1)):
        with drawing.group(move=(0, 66), turn=-90 + turn):
            drawing.path(_petal(length, width, "pointed"), darker(look.petal, shade))
    drawing.stroke("M-7 -40 V-84 M7 -40 V-84", look.heart, 8)
    drawing.stroke("M0 -40 V-96", lighter(look.heart, 0.25), 7)
    for turn, length, width, share in ((-33, 150, 80, 0.02), (33, 150, 80, 0.02), (0, 132, 86, 0.16)):
        with drawing.group(move=(0, 72), turn=-90 + turn):
            drawing.path(_petal(length, width, "pointed"), lighter(look.petal, share))
            drawing.stroke(f"M24 0 L{length * 0.8:.1f} 0 M26 -8 L{length * 0.66:.1f} -15 "
                           f"M26 8 L{length * 0.66:.1f} 15", darker(look.petal, 0.12), 2.5, opacity=0.55)


def _lily(drawing: Drawing, look: FlowerLook) -> None:
    """A floating bowl of pointed petals, seen from the side."""
    for spread, length, shade in ((72, 128, 0.14), (50, 130, 0.08), (26, 124, 0.03), (0, 118, 0.0)):
        for side in (-1, 1) if spread else (1,):
            with drawing.group(move=(side * spread * 0.2, 36), turn=-90 + side * spread):
                drawing.path(_petal(length, 54, "pointed"), darker(look.petal, shade))
    for turn in (-64, -44, -22, 0, 22, 44, 64):
        with drawing.group(move=(0, 34), turn=turn):
            drawing.stroke("M0 0 V-50", look.heart, 5)
            drawing.circle(0, -52, 5, lighter(look.heart, 0.3))
    for turn, length in ((-58, 104), (58, 104), (-28, 94), (28, 94), (0, 84)):
        with drawing.group(move=(0, 48), turn=-90 + turn):
            drawing.path(_petal(length * 0.78, 46, "pointed"), lighter(look.petal, 0.35))


def _bell(drawing: Drawing, petal: str, heart: str, size: float, turn: float = 0) -> None:
    """A bell that hangs from the origin."""
    with drawing.group(scale=size, turn=turn):
        drawing.path("M0 -6 C-26 0 -34 34 -40 66 L-54 92 L-26 82 L-13 98 L0 82 L13 98 L26 82 L54 92 "
                     "L40 66 C34 34 26 0 0 -6 Z", petal)
        drawing.path("M0 -6 C26 0 34 34 40 66 L54 92 L26 82 L13 98 L8 92 C16 60 14 20 0 -6 Z",
                     darker(petal, 0.14))
        drawing.stroke("M0 80 V108", heart, 6)
        drawing.path("M-15 4 Q0 -20 15 4 Q0 10 -15 4 Z", "#5f8f4e")


def _drop(drawing: Drawing, look: FlowerLook, size: float) -> None:
    """The hanging head of a snowdrop."""
    with drawing.group(scale=size):
        drawing.ellipse(0, 2, 14, 19, "#5f9a50")
        for turn in (34, -34):
            with drawing.group(move=(0, 14), turn=90 + turn):
                drawing.path(_petal(128, 50, "pointed"), darker(look.petal, 0.06))
        drawing.path("M-26 30 C-34 70 -22 96 0 100 C22 96 34 70 26 30 Z", look.petal)
        drawing.path("M-24 76 Q-12 60 0 78 Q12 60 24 76 Q14 98 0 100 Q-14 98 -24 76 Z", look.heart)
        with drawing.group(move=(0, 14), turn=90):
            drawing.path(_petal(122, 44, "pointed"), look.petal)
            drawing.stroke("M24 0 L100 0", darker(look.petal, 0.14), 2, opacity=0.7)


_HEADS = {"rayed": _rayed, "tousled": _tousled, "cornflower": _cornflower, "edelweiss": _edelweiss,
          "bowl": _bowl, "trumpet": _trumpet, "chalice": _chalice}


# --- leaves at the foot --------------------------------------------------------------------

def _foot(drawing: Drawing, look: FlowerLook) -> None:
    colour = look.leaf_colour
    if look.leaf == "grass":
        for lean, height in ((-120, 150), (-70, 200), (-30, 160), (40, 190), (84, 210), (130, 140)):
            drawing.path(f"M{lean * 0.12 - 8} 20 Q{lean * 0.3 - 8} {-height * 0.5} {lean} {-height} "
                         f"Q{lean * 0.3 + 12} {-height * 0.45} {lean * 0.12 + 8} 20 Z",
                         lighter(colour, 0.12) if lean > 0 else colour)
        return
    if look.leaf == "round":
        for x, y, r in ((-108, -18, 44), (104, -22, 46), (-40, 2, 40), (52, 4, 38)):
            drawing.path(f"M{x} {y + r * 0.9} C{x - r * 1.5} {y + r} {x - r * 1.3} {y - r} {x} {y - r * 0.7} "
                         f"C{x + r * 1.3} {y - r} {x + r * 1.5} {y + r} {x} {y + r * 0.9} Z",
                         colour if x < 0 else lighter(colour, 0.1))
            drawing.stroke(f"M{x} {y + r * 0.8} V{y - r * 0.3} M{x} {y + r * 0.6} L{x - r * 0.6} {y} "
                           f"M{x} {y + r * 0.6} L{x + r * 0.6} {y}", darker(colour, 0.2), 2.5, opacity=0.6)
        return
    shapes = {"lance": ((-64, 150, 34), (-30, 120, 36), (34, 126, 36), (66, 156, 34)),
              "broad": ((-40, 230, 84), (34, 214, 80)),
              "rosette": ((-80, 150, 44), (-58, 124, 48), (-24, 96, 46), (26, 98, 46), (60, 128, 48),
                          (80, 150, 44)),
              "feather": ((-66, 150, 70), (-26, 110, 56), (30, 118, 58), (64, 154, 70))}[look.leaf]
    for turn, length, width in shapes:
        shade = colour if turn < 0 else lighter(colour, 0.1)
        with drawing.group(move=(turn * 0.3, 16), turn=-90 + turn):
            if look.leaf == "feather":
                drawing.stroke(f"M0 0 L{length} 0", shade, 6)
                ribs = " ".join(f"M{x} 0 l{16} {side * width * 0.42 * (1.1 - x / length):.1f}"
                                for x in range(24, length, 17) for side in (-1, 1))
                drawing.stroke(ribs, shade, 8)
            else:
                drawing.path(_petal(length, width, "pointed"), shade)
                drawing.stroke(f"M10 0 L{number(length * 0.86)} 0", darker(colour, 0.18), 3, opacity=0.6)


def _stem(drawing: Drawing, look: FlowerLook, x: float, y: float, width: float = 8) -> None:
    drawing.stroke(f"M{number(x * 0.14)} 30 Q{number(x * 0.2)} {number(y * 0.5)} {number(x)} {number(y)}",
                   darker(look.leaf_colour, 0.06), width)


# --- whole plants, standing on the origin --------------------------------------------------

def _bouquet(drawing: Drawing, look: FlowerLook, rng: random.Random) -> None:
    """One large head and two small ones, each on its own stem."""
    deep = look.form in ("trumpet", "chalice")
    heads: Sequence[Tuple[Point, float]] = (
        ((-138, -150), 0.58), ((144, -126), 0.52), ((4, -206 if not deep else -214), 0.98))
    if look.form == "chalice":
        heads = (((-126, -82), 0.66), ((132, -70), 0.6), ((0, -150), 0.98))
    for (x, y), size in heads:
        if look.form != "chalice":
            _stem(drawing, look, x, y + (110 * size if deep else 0))
    _foot(drawing, look)
    for (x, y), size in heads:
        with drawing.group(move=(x, y), scale=size, turn=x * 0.08):
            _HEADS[look.form](drawing, look)


def _bells(drawing: Drawing, look: FlowerLook, rng: random.Random) -> None:
    for x, y in ((-96, -190), (8, -276), (112, -206)):
        _stem(drawing, look, x, y, 6)
    _foot(drawing, look)
    for x, y, size, turn in ((-96, -190, 0.86, 12), (112, -206, 0.92, -12), (8, -276, 1.16, 3)):
        drawing.stroke(f"M{x} {y} q{-turn} -10 {-turn * 0.5} 4", darker(look.leaf_colour, 0.06), 6)
        with drawing.group(move=(x, y)):
            _bell(drawing, look.petal, look.heart, size, turn)


def _arched(drawing: Drawing, look: FlowerLook, rng: random.Random) -> None:
    """Small white bells in a row below an arched stem, between two great leaves."""
    _foot(drawing, look)
    stem = darker(look.leaf_colour, 0.06)
    for mirror, size in ((True, 0.8), (False, 1.0)):
        with drawing.group(scale=size, mirror=mirror):
            drawing.stroke("M0 20 C0 -120 30 -250 156 -262", stem, 6)
            for x, y, bell in ((28, -148, 0.44), (44, -188, 0.46), (66, -222, 0.46), (94, -244, 0.42),
                               (124, -256, 0.36), (152, -262, 0.28)):
                drawing.stroke(f"M{x} {y} q12 -2 14 12", stem, 3.5)
                with drawing.group(move=(x + 14, y + 12)):
                    _bell(drawing, look.petal, look.heart, bell, -8)


def _umbel(drawing: Drawing, look: FlowerLook, rng: random.Random) -> None:
    """A bunch of nodding tubes at the top of a bare stem, as in cowslips."""
    stem = darker(look.leaf_colour, 0.06)
    bunches = ((-118, -166, 0.68), (124, -146, 0.62), (0, -252, 1.12))
    for x, y, size in bunches:
        _stem(drawing, look, x, y)
    _foot(drawing, look)
    for x, y, size in bunches:
        with drawing.group(move=(x, y), scale=size):
            for tip_x, tip_y in ((-34, -18), (34, -18), (0, -26), (-74, 8), (74, 8), (-39, 22), (39, 22),
                                 (0, 30)):
                drawing.stroke(f"M0 0 Q{number(tip_x * 0.6)} {tip_y - 30} {tip_x} {tip_y}", stem, 4.5)
                with drawing.group(move=(tip_x, tip_y), turn=-tip_x * 0.28):
                    drawing.path("M-9 -2 L-14 34 H14 L9 -2 Q0 -9 -9 -2 Z", lighter(look.leaf_colour, 0.4))
                    drawing.stroke("M0 0 V30", look.leaf_colour, 2.5)
                    for lobe_x, lobe_y, _ in ray_points(5, 13, 90):
                        drawing.circle(lobe_x, 42 + lobe_y * 0.72, 10.5,
                                       look.petal if lobe_y > 0 else darker(look.petal, 0.08))
                    drawing.ellipse(0, 42, 6.5, 5, look.heart)


def _spike(drawing: Drawing, look: FlowerLook, rng: random.Random) -> None:
    """Speckled thimbles all along tall stems, as in foxgloves."""
    spikes = ((-122, 216, 0.72), (118, 194, 0.66), (0, 322, 1.0))
    for x, height, size in spikes:
        _stem(drawing, look, x, -height, 8 * size)
    _foot(drawing, look)
    for x, height, size in spikes:
        for row in reversed(range(10)):
            share = row / 9
            y = -height + 6 + (share * 0.35 + share ** 1.3 * 0.65) * 190 * size
            at = x * (1 - (height + y) / height * 0.5)
            for side in (-1, 1):
                with drawing.group(move=(at + side * 3, y + (5 if side > 0 else 0)), turn=-side * 46):
                    if share < 0.3:
                        drawing.ellipse(0, 9 * size, 6 * size, 11 * size, lighter(look.leaf_colour, 0.3))
                    else:
                        _thimble(drawing, look, (0.32 + 0.42 * share) * size, side)


def _thimble(drawing: Drawing, look: FlowerLook, size: float, side: int) -> None:
    with drawing.group(scale=size):
        drawing.path("M0 -4 C-16 4 -22 44 -30 74 Q-32 88 -16 90 Q0 98 16 90 Q32 88 30 74 "
                     "C22 44 16 4 0 -4 Z", look.petal if side < 0 else lighter(look.petal, 0.12))
        drawing.ellipse(0, 82, 25, 11, look.heart)
        for x, y in ((-12, 80), (0, 86), (12, 80)):
            drawing.circle(x, y, 3.4, darker(look.petal, 0.25))
        drawing.path("M-13 6 Q0 -18 13 6 Q0 12 -13 6 Z", look.leaf_colour)


def _bush(drawing: Drawing, look: FlowerLook, rng: random.Random) -> None:
    """A low bush of many small flowers, as in heather."""
    for index in range(13):
        lean = -150 + index * 25
        height = 250 - abs(lean) * 0.62 + rng.uniform(-18, 18)
        tip = (lean + rng.uniform(-8, 8), -height)
        drawing.stroke(f"M{number(lean * 0.35)} 24 Q{number(lean * 0.6)} {number(-height * 0.5)} "
                       f"{number(tip[0])} {number(tip[1])}", look.leaf_colour, 5)
        for step in range(17):
            share = step / 16
            x = tip[0] + (lean * 0.6 - tip[0]) * share * 0.8
            y = tip[1] + share * height * 0.62
            reach = 4 + 15 * math.sin(math.pi * min(1, share * 0.9 + 0.1))
            side = 1 if step % 2 else -1
            shade = (look.petal, lighter(look.petal, 0.25), darker(look.petal, 0.14))[step % 3]
            drawing.ellipse(x + side * reach * 0.7, y, 8.5, 7, shade)
            drawing.circle(x + side * reach * 0.7, y + 2, 2, look.heart)


def _snowdrops(drawing: Drawing, look: FlowerLook, rng: random.Random) -> None:
    _foot(drawing, look)
    stem = darker(look.leaf_colour, 0.06)
    for x, height, mirror, size in ((-84, 206, True, 0.8), (112, 176, False, 0.72), (0, 290, False, 1.12)):
        side = -1 if mirror else 1
        tip = x + side * 46
        drawing.stroke(f"M{x * 0.2} 20 C{x * 0.3} {-height * 0.6} {x - side * 6} {-height - 30} {tip} "
                       f"{-height + 10}", stem, 6)
        drawing.path(f"M{x + side * 10} {-height - 6} Q{x + side * 40} {-height - 44} {tip + side * 14} "
                     f"{-height - 20} Q{x + side * 34} {-height - 18} {x + side * 10} {-height - 6} Z",
                     lighter(stem, 0.2))
        with drawing.group(move=(tip, -height + 12)):
            _drop(drawing, look, size)


def _floating(drawing: Drawing, look: FlowerLook, rng: random.Random) -> None:
    for x, y, rx in ((-176, -30, 96), (168, -44, 90), (0, 2, 150), (-96, 30, 80), (130, 34, 84)):
        ry = rx * 0.27
        drawing.ellipse(x + 4, y + 7, rx, ry, "#3f7f92", opacity=0.5)
        drawing.path(f"M{x} {y} L{number(x + rx * 0.9)} {number(y - ry * 0.44)} A{rx} {number(ry)} 0 1 1 "
                     f"{number(x + rx * 0.55)} {number(y - ry * 0.84)} Z",
                     look.leaf_colour if x <= 0 else lighter(look.leaf_colour, 0.12))
    with drawing.group(move=(152, -64), scale=0.5):
        _lily(drawing, look)
    with drawing.group(move=(-22, -70), scale=1.2):
        _lily(drawing, look)


_PLANTS = {"bells": _bells, "arched": _arched, "umbel": _umbel, "spike": _spike, "bush": _bush,
           "snowdrop": _snowdrops, "floating": _floating}


def flower_picture(look: FlowerLook, seed: str) -> str:
    drawing = Drawing()
    rng = random.Random(f"flower {seed}")
    backdrop(drawing, look.scene, seed)
    if look.form != "floating":
        ground = {"alps": "#6f9f6c", "winter": "#f3f7f9", "heath": "#8a649c", "farm": "#b3a356",
                  "wood": "#5f9a5c", "shade": "#4a7a58"}.get(look.scene, "#7ab264")
        drawing.path(smooth([(40, 424), (120, 384), (240, 368), (400, 370), (520, 388), (610, 424)]), ground)
    with drawing.group(move=(322, 340 if look.form == "floating" else 366)):
        _PLANTS.get(look.form, _bouquet)(drawing, look, rng)
    if look.form != "floating":
        drawing.path(smooth([(120, 424), (200, 396), (322, 386), (440, 396), (530, 424)]), ground)
    return drawing.render()
