"""The scenery behind a single bird, tree or flower: calm, pale and out of focus.

Every backdrop leaves the middle of the picture free and stays lighter than what will stand
there, so that the subject carries the picture.
"""

import math
import random
from typing import List

from svg import Drawing, Point, darker, lighter, mix, number, smooth


def hills(drawing: Drawing, rng: random.Random, base: float, height: float, colour: str,
          step: float = 80, **attributes) -> None:
    """A band of rolling hills from edge to edge, filled down to the bottom."""
    points: List[Point] = []
    x = -step
    while not points or points[-1][0] < 650:
        points.append((x, base - rng.uniform(0, height)))
        x += step * rng.uniform(0.8, 1.25)
    last = number(float(points[-1][0]))
    first = number(float(points[0][0]))
    drawing.path(f"{smooth(points)} L{last} 420 L{first} 420 Z", colour, **attributes)


def cloud(drawing: Drawing, x: float, y: float, size: float, colour: str = "#ffffff",
          opacity: float = 0.8) -> None:
    with drawing.group(move=(x, y), scale=size):
        drawing.path("M-46 14 A16 16 0 0 1 -40 -16 A26 26 0 0 1 8 -26 A20 20 0 0 1 42 -12 "
                     "A13 13 0 0 1 46 14 Z", colour, opacity=opacity)


def halo(drawing: Drawing, x: float, y: float, radius: float, colour: str = "#ffffff") -> None:
    """A disc of light with two rings around it, like the sun through thin cloud."""
    drawing.circle(x, y, radius * 1.5, colour, opacity=0.18)
    drawing.circle(x, y, radius * 1.22, colour, opacity=0.25)
    drawing.circle(x, y, radius, colour, opacity=0.5)


def conifer(drawing: Drawing, x: float, base: float, height: float, colour: str,
            **attributes) -> None:
    """A little fir for the middle distance."""
    half = height * 0.24
    tiers = []
    for tier in range(3):
        top = base - height * (1 - tier * 0.24)
        bottom = base - height * (0.58 - tier * 0.25)
        reach = half * (0.58 + tier * 0.21)
        tiers.append((top, bottom, reach))
    data = " ".join(
        f"M{number(x)} {number(top)} L{number(x + reach)} {number(bottom)} "
        f"Q{number(x)} {number(bottom + height * 0.05)} {number(x - reach)} {number(bottom)} Z"
        for top, bottom, reach in tiers)
    drawing.rect(x - height * 0.03, base - height * 0.12, height * 0.06, height * 0.13,
                 darker(colour, 0.4), **attributes)
    drawing.path(data, colour, **attributes)


def grass(drawing: Drawing, rng: random.Random, base: float, height: float, colour: str,
          count: int = 46, opacity: float = 1.0) -> None:
    blades = []
    for index in range(count):
        x = (index + rng.random()) * 660 / count - 10
        lean = rng.uniform(-14, 14)
        top = base - height * rng.uniform(0.45, 1)
        blades.append(f"M{number(x - 3)} {number(base)} Q{number(x)} {number((base + top) / 2)} "
                      f"{number(x + lean)} {number(top)} Q{number(x + 4)} "
                      f"{number((base + top) / 2)} {number(x + 4)} {number(base)} Z")
    drawing.path(" ".join(blades), colour, opacity=opacity)


def reeds(drawing: Drawing, x: float, base: float, height: float, colour: str, head: str) -> None:
    for offset, lean, share in ((-16, -10, 0.8), (0, 4, 1.0), (16, 16, 0.7), (30, 26, 0.5)):
        top = base - height * share
        drawing.stroke(f"M{number(x + offset)} {number(base)} Q{number(x + offset)} "
                       f"{number((base + top) / 2)} {number(x + offset + lean)} {number(top)}",
                       colour, 3.5)
        if share > 0.6:
            with drawing.group(move=(x + offset + lean, top), turn=lean * 0.8):
                drawing.rect(-4.5, -30, 9, 34, head, rx=4.5)


def _garden(drawing: Drawing, rng: random.Random) -> None:
    drawing.fill(drawing.vertical("#cfeae4", "#eef6dc", "#f7f3d2"))
    halo(drawing, 330, 185, 150)
    for x, y, r in ((-10, 330, 90), (90, 372, 80), (560, 360, 90), (650, 310, 100)):
        drawing.circle(x, y, r, "#a9d3a2", opacity=0.75)
        drawing.circle(x - r * 0.2, y - r * 0.25, r * 0.6, "#bfe0b2", opacity=0.7)
    hills(drawing, rng, 372, 14, "#93c58e")
    for index in range(14):
        x, y = rng.uniform(10, 630), rng.uniform(374, 394)
        drawing.circle(x, y, 4, ("#fff4f0", "#f7c6c0", "#fbe28a")[index % 3])


def _wood(drawing: Drawing, rng: random.Random) -> None:
    drawing.fill(drawing.vertical("#d9ecc4", "#b9dba8", "#8fbf88"))
    halo(drawing, 330, 180, 150, "#fdfbe0")
    for x, width, shade in ((24, 40, 0.35), (120, 24, 0.15), (505, 26, 0.12), (584, 46, 0.4)):
        drawing.path(f"M{x} 0 L{x + width} 0 Q{x + width - 4} 260 {x + width + 12} 400 "
                     f"L{x - 12} 400 Q{x + 4} 260 {x} 0 Z", mix("#9cc08a", "#5d8a63", shade),
                     opacity=0.75)
    hills(drawing, rng, 380, 24, "#6fa56f")


def _water(drawing: Drawing, rng: random.Random) -> None:
    drawing.fill(drawing.vertical("#c8e6f2", "#e6f4ee", "#fdf3d8"))
    halo(drawing, 330, 170, 140)
    hills(drawing, rng, 268, 26, "#b5d8c2")
    drawing.rect(0, 262, 640, 138, drawing.vertical("#9fd3e0", "#5ea9c4"))
    for index in range(16):
        x, y = rng.uniform(0, 600), 274 + index * 8
        width = rng.uniform(24, 90)
        drawing.stroke(f"M{number(x)} {number(float(y))} h{number(width)}", "#d8f1f4", 2.5,
                       opacity=0.6)
    reeds(drawing, 46, 404, 190, "#6d9b5a", "#8a5a36")
    reeds(drawing, 566, 404, 150, "#7aa864", "#8a5a36")


def _meadow(drawing: Drawing, rng: random.Random) -> None:
    drawing.fill(drawing.vertical("#b9e0f2", "#e4f3ec", "#fbf6d9"))
    halo(drawing, 330, 175, 145)
    cloud(drawing, 110, 70, 1.1)
    cloud(drawing, 548, 104, 0.9)
    hills(drawing, rng, 330, 30, "#c3dea0")
    hills(drawing, rng, 362, 22, "#a5cf86")
    grass(drawing, rng, 404, 46, "#7fb567")


def _night(drawing: Drawing, rng: random.Random) -> None:
    drawing.fill(drawing.vertical("#1d2b53", "#3a4a80", "#6d6f9f"))
    for _ in range(34):
        drawing.circle(rng.uniform(0, 640), rng.uniform(0, 240), rng.uniform(0.8, 2.2), "#fff8dc",
                       opacity=rng.uniform(0.5, 1))
    drawing.circle(350, 160, 176, "#f9efc5", opacity=0.10)
    drawing.circle(350, 160, 146, "#f9efc5", opacity=0.16)
    drawing.circle(350, 160, 118, "#f6ebc0")
    for x, y, r in ((300, 96, 16), (412, 122, 22), (404, 226, 13), (290, 214, 10)):
        drawing.circle(x, y, r, "#eadca6", opacity=0.7)
    hills(drawing, rng, 372, 20, "#2b3a66")
    for index in range(17):
        x = index * 41 + rng.uniform(-10, 10)
        conifer(drawing, x, 392, rng.uniform(46, 104) * (0.6 + abs(x - 330) / 520), "#22305a")
    drawing.rect(0, 386, 640, 14, "#1c2749")


def _alps(drawing: Drawing, rng: random.Random) -> None:
    drawing.fill(drawing.vertical("#8ec9e8", "#cbe7f1", "#f4f3e2"))
    halo(drawing, 330, 160, 130)
    for points, snow in (((-40, 400, 90, 190, 236, 400), 0.34), ((150, 400, 300, 250, 420, 400), 0.2),
                         ((400, 400, 566, 170, 720, 400), 0.36)):
        x0, y0, x1, y1, x2, y2 = points
        drawing.path(f"M{x0} {y0} L{x1} {y1} L{x2} {y2} Z", "#a5bdd3")
        drawing.path(f"M{x1} {y1} L{x1 + 14} {y1 + 70} L{x1 - 8} {y1 + 130} L{x1 + 20} {y2} "
                     f"L{x2} {y2} Z", "#8ba7c4")
        left, right = x1 + (x0 - x1) * snow, x1 + (x2 - x1) * snow
        low = y1 + (y2 - y1) * snow
        drawing.path(f"M{x1} {y1} L{number(right)} {number(low)} L{number(x1 + (right - x1) * 0.4)} "
                     f"{number(low - 16)} L{x1} {number(low + 10)} "
                     f"L{number(x1 + (left - x1) * 0.5)} {number(low - 14)} "
                     f"L{number(left)} {number(low)} Z", "#f6fafc")
    hills(drawing, rng, 372, 26, "#9cc58f")
    hills(drawing, rng, 392, 18, "#7fb079")


def _farm(drawing: Drawing, rng: random.Random) -> None:
    drawing.fill(drawing.vertical("#fbd9a8", "#fceccb", "#fdf6e2"))
    halo(drawing, 330, 170, 145, "#fffdf0")
    hills(drawing, rng, 316, 26, "#ecd7a0")
    with drawing.group(move=(92, 262)):
        drawing.path("M-52 60 V8 L-2 -34 L48 8 V60 Z", "#d9997a", opacity=0.85)
        drawing.path("M-62 14 L-2 -40 L58 14 L48 20 L-2 -24 L-52 20 Z", "#b4735c", opacity=0.9)
        drawing.rect(-16, 22, 28, 38, "#b4735c", rx=2, opacity=0.9)
    hills(drawing, rng, 340, 16, "#dcc684")
    for index in range(9):
        drawing.stroke(f"M{index * 90 - 60} 404 Q{200 + index * 30} 356 {280 + index * 12} 330",
                       "#c9b06c", 3, opacity=0.7)
    hills(drawing, rng, 396, 12, "#bfae63")


def _autumn(drawing: Drawing, rng: random.Random) -> None:
    drawing.fill(drawing.vertical("#f6dfc0", "#f8ead0", "#f3e2b8"))
    halo(drawing, 330, 180, 148, "#fffaf0")
    for index in range(12):
        x = index * 60 + rng.uniform(-16, 16)
        size = rng.uniform(34, 62) * (0.55 + abs(x - 330) / 420)
        colour = ("#e7b46a", "#dc9560", "#e9c877", "#cfa763")[index % 4]
        drawing.rect(x - 3, 330 - size * 0.3, 6, 60, "#b98c66", opacity=0.6)
        drawing.circle(x, 326 - size * 0.5, size, colour, opacity=0.6)
    hills(drawing, rng, 376, 18, "#cfae6c")
    for index in range(26):
        x, y = rng.uniform(0, 640), rng.uniform(372, 398)
        drawing.ellipse(x, y, 7, 3, ("#d97f4a", "#e3a24f", "#b9683f")[index % 3])


def _winter(drawing: Drawing, rng: random.Random) -> None:
    drawing.fill(drawing.vertical("#b7d3e8", "#d9e8f1", "#f3f6f4"))
    halo(drawing, 330, 175, 145)
    for index in range(15):
        x = index * 47 + rng.uniform(-10, 10)
        conifer(drawing, x, 344, rng.uniform(60, 120) * (0.5 + abs(x - 330) / 480), "#a3c0d0")
    hills(drawing, rng, 352, 18, "#e6eff4")
    hills(drawing, rng, 384, 18, "#fafcfd")
    for _ in range(36):
        drawing.circle(rng.uniform(0, 640), rng.uniform(0, 380), rng.uniform(1.5, 3.6), "#ffffff",
                       opacity=0.9)


def _heath(drawing: Drawing, rng: random.Random) -> None:
    drawing.fill(drawing.vertical("#f3c9c4", "#f9e2cf", "#fbf1dc"))
    halo(drawing, 330, 175, 140, "#fff6e4")
    hills(drawing, rng, 318, 30, "#cbb0c8")
    hills(drawing, rng, 350, 24, "#b78fb6")
    hills(drawing, rng, 388, 20, "#9a6fa2")
    for _ in range(60):
        x, y = rng.uniform(0, 640), rng.uniform(352, 398)
        drawing.circle(x, y, rng.uniform(2, 4.5), "#d3a5cf", opacity=0.7)


def _shade(drawing: Drawing, rng: random.Random) -> None:
    """Deep shade under trees, with shafts of light."""
    drawing.fill(drawing.vertical("#355f58", "#4d8070", "#7ba883"))
    for x in (120, 260, 420):
        drawing.path(f"M{x} -10 L{x + 70} -10 L{x + 10} 410 L{x - 150} 410 Z", "#e9f3c4",
                     opacity=0.12)
    drawing.circle(330, 185, 190, "#dff0c8", opacity=0.12)
    drawing.circle(330, 185, 150, "#dff0c8", opacity=0.16)
    for x, width in ((36, 50), (540, 34), (596, 54)):
        drawing.path(f"M{x} 0 h{width} Q{x + width - 6} 260 {x + width + 14} 400 H{x - 14} "
                     f"Q{x + 6} 260 {x} 0 Z", "#2d5049", opacity=0.7)
    hills(drawing, rng, 384, 22, "#5c8c66")


_PAINTERS = {
    "garden": _garden, "wood": _wood, "water": _water, "meadow": _meadow, "night": _night,
    "alps": _alps, "farm": _farm, "autumn": _autumn, "winter": _winter, "heath": _heath,
    "shade": _shade,
}


def backdrop(drawing: Drawing, kind: str, seed: str) -> None:
    _PAINTERS[kind](drawing, random.Random(f"backdrop {seed}"))


def leaf(length: float) -> str:
    """Path data of a plain pointed leaf that lies to the right of the origin."""
    half = length * 0.27
    return (f"M0 0 Q{number(length * 0.4)} {number(-half * 1.6)} {number(length)} 0 "
            f"Q{number(length * 0.4)} {number(half * 1.6)} 0 0 Z")


def twig(drawing: Drawing, points, colour: str, width: float, leaves, leaf_colour: str) -> None:
    """A branch through the points, with leaves given as (x, y, direction, length)."""
    drawing.stroke(smooth(points), colour, width)
    drawing.stroke(smooth([(x, y - width * 0.22) for x, y in points]), lighter(colour, 0.22),
                   width * 0.3, opacity=0.8)
    for index, (x, y, direction, length) in enumerate(leaves):
        shade = lighter(leaf_colour, 0.16) if index % 2 else leaf_colour
        with drawing.group(move=(x, y), turn=direction):
            drawing.path(leaf(length), shade)
            drawing.stroke(f"M0 0 L{number(length * 0.8)} 0", darker(leaf_colour, 0.22), 1.5,
                           opacity=0.7)


def ray_points(count: int, radius: float, start: float = -90) -> List[tuple]:
    """Points on a circle with the angle of each in degrees, evenly spread."""
    spread = []
    for index in range(count):
        angle = start + index * 360 / count
        spread.append((radius * math.cos(math.radians(angle)),
                       radius * math.sin(math.radians(angle)), angle))
    return spread
