"""The leaf or twig by which a tree is told, drawn upright around the origin, about 120 high."""

import math
from typing import Callable, Dict

from svg import Drawing, darker, lighter, number, polygon, smooth


def _veins(drawing: Drawing, colour: str, outline, pairs: int) -> None:
    """A midrib with a stalk, and side ribs that end before they reach the edge."""
    top, bottom = outline[0][1] + 6, outline[-1][1]
    drawing.stroke(f"M0 {number(bottom + 22)} L0 {number(top)}", darker(colour, 0.3), 3.5)
    ribs = []
    for index in range(pairs):
        y = bottom - 4 - (bottom - top) * (index + 0.3) / (pairs + 0.8)
        reach = 40.0
        while reach > 2 and reach > 0.72 * _half_width(outline, y - reach * 0.62):
            reach -= 1
        ribs.append(f"M{number(-reach)} {number(y - reach * 0.62)} L0 {number(y)} "
                    f"L{number(reach)} {number(y - reach * 0.62)}")
    drawing.stroke(" ".join(ribs), darker(colour, 0.22), 2, opacity=0.7)


def _half_width(outline, height: float) -> float:
    """How far the right half of an outline reaches at a height; the least of several answers."""
    reaches = []
    for (x, y), (u, v) in zip(outline, outline[1:]):
        if min(y, v) <= height <= max(y, v) and y != v:
            reaches.append(x + (u - x) * (height - y) / (v - y))
    return min(reaches, default=0)


def _blade(drawing: Drawing, colour: str, points, pairs: int, toothed: bool) -> None:
    """A symmetrical leaf from the right half of its outline, from tip to stalk."""
    edge = _teeth(points) if toothed else points
    curve = polygon if toothed else smooth
    for side, shade in ((1, colour), (-1, lighter(colour, 0.14))):
        half = curve([(side * x, y) for x, y in edge], close=False)
        drawing.path(half + " Z", shade)
    _veins(drawing, colour, points, pairs)


def _teeth(points):
    """Rounds the right half of an outline off and puts a small saw tooth into every piece of it."""
    dense = []
    for index in range(len(points) - 1):
        before, start, end, after = (points[max(0, min(len(points) - 1, index + offset))]
                                     for offset in (-1, 0, 1, 2))
        steps = max(2, round(math.hypot(end[0] - start[0], end[1] - start[1]) / 7))
        dense += [_between(before, start, end, after, step / steps) for step in range(steps)]
    dense.append(points[-1])
    toothed = []
    for (x, y), (u, v) in zip(dense, dense[1:]):
        length = math.hypot(u - x, v - y) or 1
        toothed += [(x, y), (x + (v - y) / length * 3, y - (u - x) / length * 3)]
    return toothed + [dense[-1]]


def _between(before, start, end, after, share: float):
    """A point on the smooth curve that leads from start to end."""
    def value(axis: int) -> float:
        a, b, c, d = before[axis], start[axis], end[axis], after[axis]
        return 0.5 * (2 * b + (c - a) * share + (2 * a - 5 * b + 4 * c - d) * share ** 2
                      + (3 * b - a - 3 * c + d) * share ** 3)
    return value(0), value(1)


def _beech(drawing: Drawing, colour: str) -> None:
    _blade(drawing, colour, [(0, -62), (18, -44), (31, -20), (35, 2), (28, 24), (12, 38), (0, 42)],
           6, False)


def _birch(drawing: Drawing, colour: str) -> None:
    _blade(drawing, colour, [(0, -64), (10, -40), (26, -12), (38, 12), (30, 28), (0, 38)], 5, True)


def _alder(drawing: Drawing, colour: str) -> None:
    _blade(drawing, colour, [(0, -38), (18, -50), (38, -32), (42, -6), (32, 20), (12, 38), (0, 42)],
           5, True)
    drawing.ellipse(-34, 46, 9, 12, "#6b4a34")
    drawing.ellipse(-48, 34, 7, 10, "#7d5a40")


def _heart(drawing: Drawing, colour: str) -> None:
    _blade(drawing, colour, [(0, -62), (10, -46), (34, -26), (46, 2), (38, 28), (20, 36), (4, 28)],
           5, True)


def _poplar(drawing: Drawing, colour: str) -> None:
    _blade(drawing, colour, [(0, -60), (12, -32), (34, -4), (42, 14), (28, 26), (0, 30)], 4, True)


def _cherry(drawing: Drawing, colour: str) -> None:
    with drawing.group(move=(-14, -6), turn=-14):
        _blade(drawing, colour, [(0, -58), (12, -40), (26, -14), (28, 6), (18, 28), (0, 38)], 6, True)
    drawing.stroke("M16 -50 C24 -20 30 0 28 26 M16 -50 C34 -24 48 -8 50 14", "#7f9a4c", 3.5)
    for x, y in ((26, 38), (51, 26)):
        drawing.circle(x, y, 13, "#b8253a")
        drawing.circle(x - 4, y - 4, 3.5, "#f0a3a6")


def _willow(drawing: Drawing, colour: str) -> None:
    for turn, length in ((-34, 96), (0, 122), (34, 96)):
        with drawing.group(move=(0, 56), turn=turn):
            drawing.path(f"M0 0 Q15 {number(-length * 0.5)} 0 {-length} Q-15 "
                         f"{number(-length * 0.5)} 0 0 Z", colour if turn else lighter(colour, 0.16))
            drawing.stroke(f"M0 0 V{number(-length * 0.9)}", darker(colour, 0.28), 2.5)


def _oak(drawing: Drawing, colour: str) -> None:
    half = [(0, -66), (12, -60), (15, -50), (12, -44), (27, -40), (31, -26), (22, -18), (37, -8),
            (38, 8), (24, 12), (26, 26), (16, 32), (5, 38), (0, 46)]
    _blade(drawing, colour, half, 4, False)
    for x, y, turn in ((42, 46, -24),):
        with drawing.group(move=(x, y), turn=turn):
            drawing.path("M-9 -2 C-9 16 -3 24 0 26 C3 24 9 16 9 -2 Z", "#b88a4a")
            drawing.path("M-12 -2 C-12 -14 12 -14 12 -2 Q0 3 -12 -2 Z", "#7d5d3a")
            drawing.stroke("M0 -12 V-20", "#7d5d3a", 3)


def _maple(drawing: Drawing, colour: str) -> None:
    half = [(0, -66), (9, -46), (20, -44), (17, -27), (32, -38), (36, -30), (54, -30), (46, -14),
            (54, -6), (36, 4), (40, 14), (22, 18), (10, 30), (0, 28)]
    outline = half + [(-x, y) for x, y in reversed(half)]
    drawing.path(polygon(outline), colour, stroke=colour, stroke_width=5)
    drawing.path(polygon([(0, -66)] + [(-x, y) for x, y in half] + [(0, 28)]), lighter(colour, 0.14))
    drawing.stroke("M0 58 V-52 M0 26 L34 -20 M0 26 L-34 -20 M0 27 L36 4 M0 27 L-36 4",
                   darker(colour, 0.28), 3)


def _pinnate(drawing: Drawing, colour: str, pairs: int = 5) -> None:
    drawing.stroke("M0 62 V-44", darker(colour, 0.3), 3.5)
    for index in range(pairs):
        y = 40 - index * 80 / pairs
        for side in (-1, 1):
            with drawing.group(move=(0, y), turn=-90 + side * 62):
                drawing.path("M0 0 Q20 -13 44 0 Q20 13 0 0 Z",
                             colour if side > 0 else lighter(colour, 0.14))
    with drawing.group(move=(0, -34), turn=-90):
        drawing.path("M0 0 Q16 -13 36 0 Q16 13 0 0 Z", colour)


def _rowan(drawing: Drawing, colour: str) -> None:
    with drawing.group(move=(-8, -6)):
        _pinnate(drawing, colour)
    for x, y in ((30, 40), (44, 34), (38, 50), (24, 54), (50, 48), (36, 28)):
        drawing.circle(x, y, 8, "#d9432f")
        drawing.circle(x - 2, y - 2, 2.2, "#f7b39c")


def _needles(drawing: Drawing, colour: str, length: float, spread: float, step: float) -> None:
    drawing.stroke("M0 62 V-50", "#8a6a4a", 5)
    strokes = []
    y = 50.0
    while y > -54:
        for side in (-1, 1):
            strokes.append(f"M0 {number(y)} l{number(side * length * math.cos(spread))} "
                           f"{number(-length * math.sin(spread))}")
        y -= step
    strokes.append(f"M0 -50 V{number(-50 - length * 0.8)}")
    drawing.stroke(" ".join(strokes), colour, 4)


def _spruce(drawing: Drawing, colour: str) -> None:
    with drawing.group(move=(-14, 0)):
        _needles(drawing, colour, 27, 0.75, 8)
    with drawing.group(move=(38, 6)):
        drawing.path("M-13 -26 Q0 -36 13 -26 L15 26 Q0 48 -15 26 Z", "#a8744a")
        drawing.stroke("M-12 -14 L12 -2 M-13 2 L13 14 M-12 18 L10 30 M12 -14 L-12 -2 M13 2 L-13 14 "
                       "M12 18 L-10 30", "#7f5435", 2.5)
        drawing.stroke("M0 -32 V-44", "#8a6a4a", 4)


def _fir(drawing: Drawing, colour: str) -> None:
    _needles(drawing, lighter(colour, 0.3), 36, 0.30, 9)
    with drawing.group(move=(0, -3)):
        _needles(drawing, colour, 36, 0.30, 9)


def _larch(drawing: Drawing, colour: str) -> None:
    drawing.stroke("M-26 62 C-10 20 6 -10 18 -58", "#8a6a4a", 5)
    for x, y in ((-17, 38), (-5, 8), (6, -22), (17, -52)):
        tuft = []
        for index in range(14):
            angle = index * 2 * math.pi / 14
            tuft.append(f"M{x} {y} l{number(20 * math.cos(angle))} {number(20 * math.sin(angle))}")
        drawing.stroke(" ".join(tuft), colour, 3.2)
    drawing.ellipse(34, 14, 12, 16, "#a8744a")
    drawing.stroke("M24 8 Q34 16 44 8 M23 18 Q34 27 45 18", "#7f5435", 2.5)


def _bundles(drawing: Drawing, colour: str, needles: int, length: float) -> None:
    """Long needles in bundles of two or five."""
    drawing.stroke("M0 62 V-20", "#9a7150", 6)
    strokes = []
    for y, lean in ((40, -56), (34, 56), (14, -46), (6, 46), (-12, -26), (-16, 26), (-22, 0)):
        for index in range(needles):
            angle = math.radians(lean - 90 + (index - (needles - 1) / 2) * 9)
            strokes.append(f"M0 {y} l{number(length * math.cos(angle))} "
                           f"{number(length * math.sin(angle))}")
    drawing.stroke(" ".join(strokes), colour, 3.2)


def _pine(drawing: Drawing, colour: str) -> None:
    _bundles(drawing, colour, 2, 50)


def _stone_pine(drawing: Drawing, colour: str) -> None:
    _bundles(drawing, colour, 5, 46)
    drawing.ellipse(-30, 52, 16, 13, "#6f5a78")
    drawing.stroke("M-42 48 Q-30 56 -18 48 M-40 58 Q-30 64 -20 58", "#554463", 2.5)


def _yew(drawing: Drawing, colour: str) -> None:
    _needles(drawing, colour, 30, 0.5, 10)
    for x, y in ((-22, 34), (20, 16), (-16, -12)):
        drawing.circle(x, y, 11, "#d63a34")
        drawing.circle(x + 2, y - 1, 4.5, "#4b2b26")


LEAVES: Dict[str, Callable[[Drawing, str], None]] = {
    "beech": _beech, "birch": _birch, "alder": _alder, "heart": _heart, "poplar": _poplar,
    "cherry": _cherry, "willow": _willow, "oak": _oak, "maple": _maple, "ash": _pinnate,
    "rowan": _rowan, "spruce": _spruce, "fir": _fir, "larch": _larch, "pine": _pine,
    "stone-pine": _stone_pine, "yew": _yew,
}
