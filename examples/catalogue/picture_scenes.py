"""Landscapes for trails: layers of terrain under a sky, and the way that leads into them.

The terrain gives the outline, the hour gives the colours, and the kind of trail decides what
stands in the foreground: a signpost for walkers, a bicycle for riders.
"""

import math
import random
from dataclasses import dataclass
from typing import Callable, Dict, List, Tuple

from picture_backdrops import cloud, conifer, grass, hills, reeds
from picture_props import bicycle, rucksack, signpost
from svg import Drawing, Point, darker, lighter, mix, number, polygon, smooth


@dataclass(frozen=True)
class Hour:
    """The light of a time of day: sky from top to bottom, haze, sun, and what it does to greens."""
    sky: Tuple[str, str, str]
    haze: str
    sun: str
    sun_at: Point
    tint: str
    tint_share: float


HOURS: Dict[str, Hour] = {
    "morning": Hour(("#f7c9a8", "#fbe0c0", "#fdf1d9"), "#f3d9c9", "#fff6df", (182, 150), "#f4c08c", 0.18),
    "day": Hour(("#5fb2e2", "#a5d8ee", "#e2f3f1"), "#c9e4ee", "#fffbe6", (494, 92), "#ffffff", 0.02),
    "evening": Hour(("#6d5a9e", "#e08a86", "#fbcf8f"), "#d99a9c", "#ffe6a8", (330, 196), "#8a4f78", 0.28),
    "autumn": Hour(("#8fc3d8", "#d9e3d2", "#fbe8c2"), "#dfd3bb", "#fff4d0", (140, 110), "#d9943f", 0.34),
    "winter": Hour(("#6fa3d3", "#acd0ea", "#eef5f8"), "#cfe2ef", "#ffffff", (470, 104), "#eaf3f8", 0.42),
}


class Scene:
    """A drawing together with the light it is painted in."""

    def __init__(self, hour: str, seed: str):
        self.drawing = Drawing()
        self.hour = HOURS[hour]
        self.rng = random.Random(f"scene {seed}")

    def tone(self, colour: str, distance: float = 0.0) -> str:
        """A colour in this light; the farther away, the more of it is lost in the haze."""
        lit = mix(colour, self.hour.tint, self.hour.tint_share)
        return mix(lit, self.hour.haze, distance)

    def sky(self) -> None:
        drawing, hour = self.drawing, self.hour
        drawing.fill(drawing.vertical(*hour.sky))
        x, y = hour.sun_at[0] + self.rng.uniform(-50, 50), hour.sun_at[1]
        for radius, opacity in ((120, 0.16), (84, 0.24)):
            drawing.circle(x, y, radius, hour.sun, opacity=opacity)
        drawing.circle(x, y, 46, hour.sun, opacity=0.95)
        for _ in range(3):
            cloud(drawing, self.rng.uniform(40, 600), self.rng.uniform(36, 120), self.rng.uniform(0.6, 1.1),
                  lighter(hour.sky[2], 0.5), 0.75)

    def hills(self, base: float, height: float, colour: str, distance: float, step: float = 110) -> None:
        hills(self.drawing, self.rng, base, height, self.tone(colour, distance), step)

    def woods(self, base: float, low: float, high: float, colour: str, distance: float,
              step: float = 26) -> None:
        """A row of firs along a slope."""
        x = -10.0
        while x < 650:
            shade = darker(colour, self.rng.uniform(0, 0.16))
            conifer(self.drawing, round(x), base + self.rng.uniform(-5, 5), self.rng.uniform(low, high),
                    self.tone(shade, distance))
            x += step * self.rng.uniform(0.6, 1.4)

    def way(self, horizon: float, aim: float, colour: str, width: float = 150, start: float = 250) -> None:
        """A path that winds from the lower edge up to a point on the horizon, narrowing as it goes."""
        left: List[Point] = []
        right: List[Point] = []
        for step in range(13):
            share = step / 12
            far = 1 - (1 - share) ** 1.7
            y = 412 + (horizon - 412) * far
            x = start + (aim - start) * share + math.sin(share * 7.2) * 92 * (1 - share) ** 0.8 * min(1, share * 3)
            half = width / 2 * (1 - share) ** 1.9 + 1.6
            left.append((x - half, y))
            right.append((x + half, y))
        shade = self.tone(colour, 0.05)
        self.drawing.path(smooth(left) + " L" + smooth(right[::-1])[1:] + " Z", shade)
        self.drawing.stroke(smooth(left[:9]), lighter(shade, 0.3), 2.5, opacity=0.6)

    def peak(self, x: float, y: float, left: float, right: float, base: float, rock: str, distance: float,
             snow: float = 0.3) -> None:
        """A mountain with a bright and a dark face and snow down to a share of its height."""
        drawing, rng = self.drawing, self.rng
        bright, dark = self.tone(rock, distance), self.tone(darker(rock, 0.22), distance)
        height = base - y
        flank: List[Point] = [(x, y)]
        for share in (0.16, 0.33, 0.5, 0.68, 0.84):
            wobble = rng.uniform(-0.03, 0.03)
            flank.append((x - left * (share + wobble), y + height * share))
        flank.append((x - left, base))
        slope: List[Point] = [(x, y)]
        for share in (0.14, 0.3, 0.48, 0.66, 0.85):
            wobble = rng.uniform(-0.03, 0.03)
            slope.append((x + right * (share + wobble), y + height * share))
        slope.append((x + right, base))
        drawing.path(polygon(flank + slope[:0:-1]), bright)
        ridge: List[Point] = [(x, y)]
        for index, share in enumerate((0.2, 0.36, 0.55, 0.75, 1.0)):
            side = 1 if index % 2 == 0 else -0.7
            ridge.append((x + side * right * 0.10 * (0.5 + share), y + height * share))
        drawing.path(polygon(ridge + slope[:0:-1]), dark)
        if not snow:
            return
        line = y + height * snow
        lower = [(x + (right * snow) * 0.98, line), (x + right * snow * 0.62, line - height * snow * 0.2),
                 (x + right * snow * 0.3, line + height * snow * 0.24), (x, line - height * snow * 0.14),
                 (x - left * snow * 0.3, line + height * snow * 0.2),
                 (x - left * snow * 0.6, line - height * snow * 0.16), (x - left * snow * 0.98, line)]
        drawing.path(polygon([(x, y)] + lower), self.tone("#ffffff", distance * 0.6))
        shade = [point for point in lower if point[0] >= x - 1]
        drawing.path(polygon([(x, y)] + shade), self.tone("#cddbe8", distance * 0.6))

    def water(self, top: float, colour: str = "#4f9fc4", bottom: float = 402) -> None:
        drawing = self.drawing
        drawing.rect(0, top, 640, bottom - top,
                     drawing.vertical(self.tone(lighter(colour, 0.45), 0.1), self.tone(colour)))
        for index in range(round((bottom - top) / 8)):
            x = self.rng.uniform(-20, 600)
            drawing.stroke(f"M{number(x)} {number(top + 6 + index * 8)} h{number(self.rng.uniform(20, 90))}",
                           lighter(self.hour.sky[2], 0.6), 2.2, opacity=0.55)


Painter = Callable[[Scene], None]


# The great peaks of an alpine picture from back to front: place of the tip, reach to both sides.
_MASSIFS = (
    ((190, 96, 190, 200), (470, 72, 210, 220)),
    ((90, 130, 150, 150), (560, 118, 170, 160), (322, 50, 240, 230)),
    ((250, 118, 160, 150), (420, 84, 170, 190), (110, 62, 200, 200)),
    ((520, 140, 150, 150), (360, 104, 150, 170), (210, 58, 210, 190)),
)


def _alpine(scene: Scene) -> None:
    rng = scene.rng
    for x in (40, 210, 390, 560):
        scene.peak(x + rng.uniform(-40, 40), rng.uniform(136, 182), 150, 160, 330, "#7f97b5", 0.5, 0.24)
    massif = _MASSIFS[int(rng.random() * len(_MASSIFS))]
    for index, (x, y, left, right) in enumerate(massif):
        distance = 0.2 - 0.14 * index / (len(massif) - 1)
        scene.peak(x + rng.uniform(-16, 16), y, left, right, 345, "#6c809c", distance, rng.uniform(0.28, 0.4))
    scene.hills(322, 34, "#7fae7a", 0.24)
    scene.woods(334, 28, 54, "#3f7558", 0.18)
    scene.hills(352, 22, "#79b565", 0.0)
    scene.way(338, rng.uniform(280, 400), "#ecd9ae")


def _lake(scene: Scene) -> None:
    shift = scene.rng.uniform(-30, 30)
    scene.peak(120 + shift, 120, 190, 180, 280, "#7b8ea9", 0.3, 0.3)
    scene.peak(520 + shift, 104, 200, 200, 280, "#7488a5", 0.24, 0.32)
    scene.peak(320 + shift, 76, 170, 180, 280, "#687c99", 0.1, 0.36)
    scene.hills(262, 24, "#5d9470", 0.2)
    scene.woods(270, 20, 40, "#3f7558", 0.2)
    scene.water(268, "#3f93b5", 350)
    with scene.drawing.group(opacity=0.28):
        scene.drawing.path(f"M{number(200 + shift)} 268 L{number(320 + shift)} 340 L{number(440 + shift)} 268 Z",
                           scene.tone("#ffffff", 0.1))
    scene.drawing.path(smooth([(-20, 420), (-20, 338), (90, 330), (230, 346), (360, 366), (500, 352),
                               (660, 318), (660, 420)], True), scene.tone("#79b565"))
    scene.way(352, 500, "#ecd9ae", 120, 210)


def _uplands(scene: Scene) -> None:
    scene.hills(206, 50, "#7fa3a0", 0.6, 150)
    scene.hills(240, 46, "#6d9a86", 0.42, 140)
    scene.hills(276, 40, "#5f9474", 0.24, 150)
    scene.woods(282, 20, 36, "#46805f", 0.28, 20)
    scene.hills(318, 30, "#6aa568", 0.1, 130)
    scene.woods(330, 40, 76, "#34694f", 0.06, 58)
    scene.hills(358, 18, "#85bd69", 0.0)
    scene.way(344, 300, "#ead8ae")


def _sandstone(scene: Scene) -> None:
    scene.hills(250, 30, "#86a794", 0.5, 140)
    rng, drawing = scene.rng, scene.drawing
    for x, top, width in ((24, 150, 78), (112, 108, 70), (196, 172, 54), (424, 150, 60), (492, 92, 74),
                          (584, 160, 70)):
        rock, shade = scene.tone("#dcb98a", 0.1), scene.tone("#b98f66", 0.1)
        half = width / 2
        drawing.path(f"M{x - half} 340 L{x - half * 0.9} {top + 24} Q{x - half * 0.8} {top} {x - half * 0.2} "
                     f"{top} H{x + half * 0.4} Q{x + half * 0.9} {top + 4} {x + half * 0.92} {top + 30} "
                     f"L{x + half} 340 Z", rock)
        drawing.path(f"M{x + half * 0.1} 340 L{x + half * 0.2} {top + 6} H{x + half * 0.4} "
                     f"Q{x + half * 0.9} {top + 8} {x + half * 0.92} {top + 30} L{x + half} 340 Z", shade)
        for _ in range(4):
            y = top + rng.uniform(40, 160)
            drawing.stroke(f"M{number(x - half * 0.8)} {number(y)} h{number(width * rng.uniform(0.4, 0.75))}",
                           scene.tone("#a87f5a", 0.1), 3, opacity=0.55)
        conifer(drawing, x - 8, top + 6, 34, scene.tone("#3f7558", 0.1))
    with drawing.group(move=(310, 196)):
        bridge = scene.tone("#a88260", 0.05)
        drawing.path("M-84 10 H84 V26 H66 C64 52 34 52 30 26 H18 C14 58 -14 58 -18 26 H-30 C-34 52 -64 52 "
                     "-66 26 H-84 Z", bridge)
        drawing.stroke("M-84 2 H84 M-72 2 V10 M-48 2 V10 M-24 2 V10 M0 2 V10 M24 2 V10 M48 2 V10 M72 2 V10",
                       bridge, 3)
    scene.woods(330, 44, 88, "#3a6f52", 0.1, 30)
    scene.hills(354, 20, "#7fb568", 0.0)
    scene.way(342, 330, "#efe0b8")


def _heath(scene: Scene) -> None:
    scene.hills(256, 26, "#8a9fb0", 0.5, 150)
    scene.woods(264, 24, 44, "#4f7a66", 0.36, 18)
    scene.hills(282, 22, "#a58bb5", 0.24)
    scene.hills(316, 24, "#a26fac", 0.1)
    scene.hills(350, 20, "#8f5a9e", 0.0)
    for _ in range(90):
        x, y = scene.rng.uniform(0, 640), scene.rng.uniform(322, 398)
        scene.drawing.circle(x, y, scene.rng.uniform(2, 5), scene.tone("#cf9fd4"), opacity=0.7)
    scene.way(318, 400, "#f0e2c4", 140)
    for x, base, height in ((86, 352, 110), (128, 360, 74), (560, 350, 124), (514, 344, 66)):
        shade = scene.tone("#3c6b52")
        scene.drawing.path(f"M{x} {base - height} C{x + height * 0.24} {base - height * 0.6} "
                           f"{x + height * 0.2} {base} {x} {base} C{x - height * 0.2} {base} "
                           f"{x - height * 0.24} {base - height * 0.6} {x} {base - height} Z", shade)


def _cliffs(scene: Scene) -> None:
    scene.water(236, "#3f9fbf", 402)
    drawing = scene.drawing
    chalk, shade = scene.tone("#fbf8ee"), scene.tone("#d9d8cf")
    drawing.path("M-10 118 C60 108 140 116 214 128 L232 160 L226 200 L244 236 L240 270 L262 312 L268 352 "
                 "L-10 380 Z", chalk)
    drawing.path("M214 128 L232 160 L226 200 L244 236 L240 270 L262 312 L268 352 L196 356 L204 300 L184 252 "
                 "L198 196 L180 150 Z", shade)
    drawing.path("M96 118 L112 168 L98 220 L118 282 L108 362 L82 364 L90 290 L72 226 L88 170 Z", shade)
    drawing.stroke("M20 180 h46 M128 206 h40 M30 246 h36 M140 300 h38", shade, 4, opacity=0.8)
    drawing.path(smooth([(-30, 130), (-30, 96), (60, 86), (140, 96), (222, 126), (150, 130), (60, 120)], True),
                 scene.tone("#78ad62"))
    for x, height in ((10, 62), (44, 74), (84, 58), (126, 66), (168, 44)):
        drawing.rect(x - 3, 100 - height * 0.3, 6, 26, scene.tone("#7a5f4a"))
        drawing.circle(x, 96 - height * 0.5, height * 0.42, scene.tone("#5f9c58"))
        drawing.circle(x - 5, 90 - height * 0.5, height * 0.26, scene.tone("#76b168"))
    with drawing.group(move=(470, 250)):
        drawing.path("M-34 18 H38 L26 34 H-24 Z", scene.tone("#8a5a44"))
        drawing.path("M0 12 V-66 L44 8 Z", "#ffffff")
        drawing.path("M-4 12 V-50 L-32 8 Z", scene.tone("#e7edf0"))
    drawing.path(smooth([(-20, 420), (-20, 352), (120, 346), (280, 348), (430, 362), (560, 384), (660, 420)],
                        True), scene.tone("#ecdcb2"))
    drawing.stroke(smooth([(280, 346), (430, 360), (560, 382), (650, 412)]), "#ffffff", 6, opacity=0.8)
    scene.way(350, 150, "#d9c394", 110, 270)


def _dunes(scene: Scene) -> None:
    scene.water(222, "#4aa3c0", 320)
    drawing = scene.drawing
    with drawing.group(move=(516, 138)):
        for index in range(5):
            drawing.path(f"M{-17 + index * 1.6:.1f} {90 - index * 26} H{17 - index * 1.6:.1f} "
                         f"L{17 - (index + 1) * 1.6:.1f} {64 - index * 26} H{-17 + (index + 1) * 1.6:.1f} Z",
                         scene.tone("#d9463c" if index % 2 == 0 else "#fbf6ec"))
        drawing.rect(-11, -62, 22, 22, scene.tone("#fff0b8"))
        drawing.path("M-15 -62 Q0 -88 15 -62 Z", scene.tone("#b8352f"))
    drawing.path(smooth([(-30, 420), (-30, 286), (90, 262), (210, 290), (330, 296), (450, 262), (560, 236),
                         (670, 250), (670, 420)], True), scene.tone("#ecdcb0", 0.1))
    drawing.path(smooth([(-30, 420), (-30, 330), (110, 306), (260, 330), (400, 344), (540, 316), (670, 306),
                         (670, 420)], True), scene.tone("#e2cb94"))
    for x, y in ((60, 300), (130, 312), (470, 268), (560, 250), (600, 318), (520, 330), (30, 352), (180, 338)):
        for lean in (-14, -6, 2, 10, 18):
            drawing.stroke(f"M{x} {y + 14} Q{x + lean * 0.3:.1f} {y - 8} {x + lean} {y - 20}",
                           scene.tone("#8aa35e"), 3)
    scene.way(312, 330, "#f7ecd0", 130)


def _river(scene: Scene) -> None:
    scene.hills(220, 54, "#7c9f92", 0.5, 150)
    scene.hills(258, 46, "#6a9a72", 0.3, 140)
    drawing = scene.drawing
    with drawing.group(move=(470, 196)):
        wall, roof = scene.tone("#d8c7a6", 0.12), scene.tone("#a8604c", 0.12)
        drawing.rect(-42, 8, 84, 46, wall)
        drawing.rect(-54, -14, 26, 68, lighter(wall, 0.12))
        drawing.rect(30, -30, 22, 84, lighter(wall, 0.06))
        drawing.path("M-58 -14 L-41 -40 L-24 -14 Z M26 -30 L41 -60 L56 -30 Z M-28 8 L0 -12 L28 8 Z", roof)
        drawing.rect(-8, 26, 12, 18, darker(wall, 0.4), rx=6)
    scene.hills(284, 30, "#6fa765", 0.18, 120)
    scene.woods(290, 20, 40, "#477f5a", 0.2, 44)
    drawing.path(smooth([(640, 276), (470, 286), (330, 300), (380, 326), (520, 352), (660, 420), (300, 424),
                         (230, 372), (190, 326), (300, 290), (470, 276), (650, 262)], True),
                 drawing.vertical(scene.tone("#9fd0de"), scene.tone("#4a9dc0")))
    drawing.stroke("M300 318 h60 M350 340 h70 M310 362 h90 M400 380 h80", "#e4f4f6", 3, opacity=0.7)
    drawing.path(smooth([(-20, 420), (-20, 316), (90, 312), (190, 336), (250, 380), (290, 420)], True),
                 scene.tone("#7fb966"))
    scene.way(322, 120, "#ecd9ae", 110, 130)


def _vineyards(scene: Scene) -> None:
    scene.hills(214, 48, "#8aa593", 0.5, 150)
    scene.hills(262, 50, "#86a468", 0.26, 170)
    drawing = scene.drawing
    drawing.path(smooth([(-30, 420), (-30, 236), (120, 214), (300, 262), (420, 330), (500, 420)], True),
                 scene.tone("#8fb35e", 0.08))
    for row in range(11):
        x = -60 + row * 46
        drawing.stroke(f"M{x} 420 Q{x + 30} 330 {150 + row * 14} {224 + row * 7}", scene.tone("#5c8b45", 0.06), 8,
                       stroke_dasharray="2 13")
        drawing.stroke(f"M{x + 6} 420 Q{x + 36} 332 {154 + row * 14} {226 + row * 7}",
                       scene.tone("#6f9f4c", 0.06), 4)
    with drawing.group(move=(516, 226)):
        wall, roof = scene.tone("#f4ead4", 0.1), scene.tone("#b5624a", 0.1)
        for x, width, height in ((-74, 40, 30), (-30, 34, 36), (30, 42, 32)):
            drawing.rect(x, 44 - height, width, height, wall)
            drawing.path(f"M{x - 5} {44 - height} L{x + width / 2} {22 - height} L{x + width + 5} {44 - height} Z",
                         roof)
        drawing.rect(6, -32, 20, 76, wall)
        drawing.path("M2 -32 L16 -74 L30 -32 Z", scene.tone("#6d7f8f", 0.1))
    scene.hills(300, 14, "#7cab62", 0.1, 120)
    scene.hills(350, 20, "#8abf6a", 0.0)
    scene.way(326, 470, "#eedcb2")


def _lowland(scene: Scene) -> None:
    scene.hills(268, 14, "#8fb39a", 0.42, 150)
    drawing, rng = scene.drawing, scene.rng
    for index in range(16):
        x, size = index * 42 + rng.uniform(-12, 12), rng.uniform(14, 28)
        drawing.circle(x, 266 - size * 0.4, size, scene.tone("#6d9f72", 0.3))
    with drawing.group(move=(478, 226)):
        drawing.path("M-20 52 L-12 -30 H12 L20 52 Z", scene.tone("#b5705a", 0.06))
        drawing.path("M-16 -30 Q0 -56 16 -30 Z", scene.tone("#6b5a55", 0.06))
        for turn in (20, 110, 200, 290):
            with drawing.group(move=(0, -30), turn=turn):
                drawing.stroke("M0 0 V-78", scene.tone("#6b5a55"), 4)
                drawing.path("M2 -16 H18 V-76 H2 Z", scene.tone("#fbf5e6"))
    scene.hills(290, 10, "#8fc06c", 0.14, 120)
    scene.hills(326, 12, "#d9c96a", 0.08, 140)
    scene.hills(354, 14, "#82b964", 0.0)
    scene.way(286, 300, "#ead8ae", 160, 250)
    for x, size in ((60, 54), (588, 48)):
        drawing.rect(x - 6, 318 - size * 0.2, 12, 54, scene.tone("#7d6049"))
        for dx, dy, r in ((-0.5, -0.4, 0.7), (0.5, -0.4, 0.7), (0, -1.0, 0.8)):
            drawing.circle(x + dx * size, 312 + dy * size, r * size, scene.tone("#5f9c58"))
            drawing.circle(x + dx * size - 8, 304 + dy * size, r * size * 0.6, scene.tone("#76b168"))


def _lakeland(scene: Scene) -> None:
    scene.hills(236, 22, "#86aa9a", 0.46, 140)
    scene.woods(246, 22, 42, "#4f8068", 0.36, 17)
    scene.water(244, "#4a9fc2", 402)
    drawing = scene.drawing
    for x, y, width in ((120, 262, 150), (430, 276, 190)):
        drawing.ellipse(x + width / 2, y + 6, width / 2, 9, scene.tone("#7fb068", 0.16))
        for step in range(6):
            conifer(drawing, x + 22 + step * (width - 44) / 5, y + 4, scene.rng.uniform(26, 46),
                    scene.tone("#3f7558", 0.18))
    with drawing.group(move=(318, 316)):
        drawing.path("M-56 -6 C-40 12 40 12 56 -6 C30 0 -30 0 -56 -6 Z", scene.tone("#c8503c"))
        drawing.stroke("M-22 -20 L26 12", scene.tone("#7a5a3c"), 4)
        drawing.circle(-6, -26, 7, scene.tone("#f0c79e"))
        drawing.path("M-15 -2 Q-6 -28 5 -2 Z", scene.tone("#f0b43c"))
    drawing.path(smooth([(-20, 420), (-20, 352), (120, 346), (250, 366), (380, 384), (520, 372), (660, 340),
                         (660, 420)], True), scene.tone("#7fb966"))
    reeds(drawing, 36, 410, 120, scene.tone("#5f8f50"), scene.tone("#8a5a36"))
    reeds(drawing, 590, 410, 100, scene.tone("#5f8f50"), scene.tone("#8a5a36"))
    scene.way(372, 420, "#ecd9ae", 110, 200)


def _gorge(scene: Scene) -> None:
    drawing = scene.drawing
    scene.hills(150, 40, "#8aa796", 0.5, 140)
    drawing.rect(196, 150, 250, 250, scene.tone("#5f7f86", 0.3))
    drawing.path("M270 148 C266 210 262 270 248 330 H392 C376 270 372 210 368 148 Z",
                 drawing.vertical("#f4fbfc", scene.tone("#a9d9e4")))
    drawing.stroke("M288 156 C286 220 282 270 272 324 M316 152 V322 M346 156 C350 220 352 270 362 324",
                   "#ffffff", 6, opacity=0.8)
    for points, shade in ((((-10, 60), (120, 84), (196, 130), (232, 180), (214, 240), (256, 300), (232, 420),
                            (-10, 420)), 0.0),
                          (((650, 50), (520, 80), (436, 124), (402, 176), (428, 236), (388, 296), (416, 420),
                            (650, 420)), 0.12)):
        drawing.path(polygon(points), scene.tone(darker("#8a8f8c", shade)))
    drawing.path(polygon(((-10, 60), (120, 84), (196, 130), (160, 190), (176, 260), (130, 330), (150, 420),
                          (-10, 420))), scene.tone("#9fa39c"))
    drawing.path(polygon(((650, 50), (520, 80), (436, 124), (480, 190), (452, 262), (506, 330), (480, 420),
                          (650, 420))), scene.tone("#a3a69e"))
    drawing.ellipse(320, 346, 132, 34, scene.tone("#6fbccf"))
    drawing.stroke("M246 340 h60 M300 356 h80 M340 338 h50", "#f4fbfc", 4, opacity=0.8)
    for x, base, height in ((20, 96, 92), (70, 104, 74), (126, 112, 82), (610, 88, 96), (556, 98, 70),
                            (500, 108, 84)):
        conifer(drawing, x, base, height, scene.tone("#3a6f52"))
    drawing.path(smooth([(-20, 424), (-20, 362), (120, 348), (250, 372), (400, 382), (540, 352), (660, 346),
                         (660, 424)], True), scene.tone("#6fa865"))
    with drawing.group(move=(320, 226)):
        drawing.stroke("M-108 6 Q0 40 112 2", scene.tone("#7a5a40"), 7)
        drawing.stroke("M-108 -22 Q0 12 112 -26", scene.tone("#7a5a40"), 3.5)
        drawing.stroke("M-80 -15 V12 M-48 -7 V20 M-16 -3 V24 M16 -3 V24 M48 -8 V19 M80 -16 V10",
                       scene.tone("#7a5a40"), 3)
    scene.way(372, 300, "#ead8ae", 120, 230)


def _moor(scene: Scene) -> None:
    scene.hills(244, 22, "#8aa0a0", 0.5, 150)
    scene.woods(258, 22, 46, "#567a68", 0.38, 19)
    scene.hills(274, 12, "#b5a56a", 0.2)
    drawing = scene.drawing
    for x, y, rx in ((120, 300, 90), (470, 292, 120), (330, 324, 80), (560, 346, 90)):
        drawing.ellipse(x, y + 3, rx * 1.08, rx * 0.2, scene.tone("#7f8a4a", 0.06))
        drawing.ellipse(x, y, rx, rx * 0.16, scene.tone("#8fc3d6", 0.05))
        drawing.stroke(f"M{x - rx * 0.5:.1f} {y} h{rx * 0.6:.1f}", "#f2f9fa", 2.5, opacity=0.7)
    scene.hills(356, 12, "#a39a52", 0.04)
    grass(drawing, scene.rng, 372, 30, scene.tone("#b9a864"), 60)
    for x, height in ((66, 130), (110, 90), (574, 140)):
        drawing.rect(x - 4, 364 - height, 8, height, "#efece2")
        drawing.stroke(f"M{x - 3} {364 - height * 0.3:.0f} h5 M{x - 1} {364 - height * 0.55:.0f} h5", "#4a4644", 3)
        for dx, dy, r in ((-16, 0.86, 22), (16, 0.84, 20), (0, 1.02, 24)):
            drawing.circle(x + dx, 364 - height * dy, r, scene.tone("#9fb85a"))
    drawing.path("M214 412 L290 330 H326 L370 412 Z", scene.tone("#b08a60"))
    planks = []
    for index in range(9):
        y = 336 + index * index * 1.0 + index * 1.4
        share = (y - 330) / 82
        planks.append(f"M{number(290 - 76 * share)} {number(y)} H{number(326 + 44 * share)}")
    drawing.stroke(" ".join(planks), scene.tone("#8a6846"), 3)


TERRAINS: Dict[str, Painter] = {
    "alpine": _alpine, "lake": _lake, "uplands": _uplands, "sandstone": _sandstone, "heath": _heath,
    "cliffs": _cliffs, "dunes": _dunes, "river": _river, "vineyards": _vineyards, "lowland": _lowland,
    "lakeland": _lakeland, "gorge": _gorge, "moor": _moor,
}


# The kind of a trail's picture, with what is put in its foreground and where.
_PROPS = {"hiking": (signpost, 520), "resting": (rucksack, 520), "cycling": (bicycle, 470)}


def trail_picture(terrain: str, hour: str, kind: str, accent: str, seed: str) -> str:
    """A trail's picture; every other landscape is turned round, so that few look alike."""
    scene = Scene(hour, seed)
    scene.sky()
    turned = scene.rng.random() < 0.5
    with scene.drawing.group(move=(640, 0) if turned else (0, 0), mirror=turned):
        TERRAINS[terrain](scene)
        place, x = _PROPS[kind]
        place(scene.drawing, x, 388, accent)
    return scene.drawing.render()
