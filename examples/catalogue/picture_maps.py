"""Maps: an invented relief with contour lines, water, woods, paths and settlements.

A map package shows the same relief twice: as a sheet to look at (`map_sheet`) and, folded and
laid on a coloured ground, as its picture in the catalogue (`map_picture`).
"""

import math
import random
from dataclasses import dataclass
from typing import Callable, Dict, List, Sequence, Tuple

from contours import Field, Grid, outline_path
from svg import Drawing, Point, darker, mix, number, smooth


@dataclass(frozen=True)
class MapLook:
    """How a map is drawn: its kind of relief, its scale of colours, and the ground it lies on."""
    relief: str
    palette: str
    ground: Tuple[str, str]
    overview: bool = False


# From the lowest land to the highest.
PALETTES: Dict[str, Sequence[str]] = {
    "alpine": ("#cfe3b4", "#dde6b5", "#e9e3b6", "#e6d2a4", "#dcbd92", "#cdab8b", "#d8c6b4", "#f1ece6",
               "#ffffff"),
    "uplands": ("#dcebc2", "#c9e1ad", "#b5d69b", "#a3ca8c", "#b9cf8b", "#d3d394", "#e0cd97"),
    "lowland": ("#eef3d4", "#e3edc3", "#d5e6b4", "#c7dda4", "#dfe0a6"),
    "heath": ("#eef0d3", "#e6e3c8", "#e3d3cf", "#d9bfd0", "#cfafc9", "#c6a2bd"),
    "coast": ("#f6eecb", "#eaeec2", "#d9e6b0", "#c6dca0", "#b3d094"),
}
SEA, SHORE = "#a9d8e8", "#6fb3cc"


def _bumps(rng: random.Random, count: int, spread: float, low: float, high: float) -> List[tuple]:
    return [(rng.uniform(-40, 680), rng.uniform(-30, 430), rng.uniform(low, high),
             spread * rng.uniform(0.6, 1.4)) for _ in range(count)]


def _sum(bumps: Sequence[tuple]) -> Field:
    def height(x: float, y: float) -> float:
        total = 0.0
        for bx, by, top, spread in bumps:
            total += top * math.exp(-((x - bx) ** 2 + (y - by) ** 2) / (2 * spread * spread))
        return total
    return height


def _detail(rng: random.Random, strength: float) -> Field:
    """Small knolls and hollows, so that no slope is quite smooth."""
    return _sum(_bumps(rng, 64, 21, -strength * 2, strength * 2))


def _ridges(rng: random.Random) -> Field:
    """Long mountain chains with valleys between them."""
    slant, phase = rng.uniform(-0.5, 0.5), rng.uniform(0, 6)
    bumps, detail = _sum(_bumps(rng, 26, 38, -0.16, 0.34)), _detail(rng, 0.12)

    def height(x: float, y: float) -> float:
        across = (y + slant * (x - 320) + 26 * math.sin(x / 90 + phase)) / 66
        return 0.45 + 0.3 * math.sin(across + phase) + bumps(x, y) + detail(x, y)
    return height


def _domes(rng: random.Random) -> Field:
    bumps, detail = _sum(_bumps(rng, 24, 52, -0.18, 0.44)), _detail(rng, 0.10)
    return lambda x, y: 0.2 + bumps(x, y) + detail(x, y)


def _plain(rng: random.Random) -> Field:
    bumps, detail = _sum(_bumps(rng, 20, 52, -0.24, 0.32)), _detail(rng, 0.09)
    return lambda x, y: 0.3 + bumps(x, y) + detail(x, y)


def _coast(rng: random.Random) -> Field:
    """The sea in the north, with a broken shore and islands before it."""
    phase = rng.uniform(0, 6)
    bumps, detail = _sum(_bumps(rng, 26, 38, -0.26, 0.32)), _detail(rng, 0.12)

    def height(x: float, y: float) -> float:
        shore = 150 + 38 * math.sin(x / 84 + phase) + 20 * math.sin(x / 31 + phase * 2)
        return (y - shore) / 330 + bumps(x, y) + detail(x, y)
    return height


def _lakes(rng: random.Random) -> Field:
    hills, detail = _sum(_bumps(rng, 20, 46, 0.02, 0.34)), _detail(rng, 0.11)
    basins = _sum(_bumps(rng, 16, 32, 0.3, 0.66))
    return lambda x, y: 0.3 + hills(x, y) - basins(x, y) + detail(x, y)


def _great_lake(rng: random.Random) -> Field:
    """One long lake among hills that rise away from it."""
    bumps, detail = _sum(_bumps(rng, 26, 40, -0.14, 0.32)), _detail(rng, 0.10)
    phase = rng.uniform(0, 6)

    def height(x: float, y: float) -> float:
        middle = 200 + 40 * math.sin(x / 120 + phase)
        away = math.hypot((x - 330) / 236, (y - middle) / 74)
        slope = -0.46 + 0.5 * away if away < 1.6 else 0.34 + 0.12 * (away - 1.6)
        return slope + (bumps(x, y) + detail(x, y)) * min(1.0, 0.35 + away * 0.4)
    return height


_RELIEFS: Dict[str, Callable[[random.Random], Field]] = {
    "ridges": _ridges, "domes": _domes, "plain": _plain, "coast": _coast, "lakes": _lakes,
    "great-lake": _great_lake,
}


class _Sheet:
    """Draws one map sheet of the full picture size."""

    def __init__(self, drawing: Drawing, look: MapLook, seed: str):
        self.drawing = drawing
        self.look = look
        self.rng = random.Random(f"map {seed}")
        self.field = _RELIEFS[look.relief](self.rng)
        self.grid = Grid(self.field, 640, 400, 9)

    def draw(self) -> None:
        self._land()
        self._graticule()
        if not self.look.overview:
            self._woods()
        self._stream()
        self._roads()
        if self.look.overview:
            self._frames()
        else:
            self._route()
        self._summits()

    def _land(self) -> None:
        drawing, colours = self.drawing, PALETTES[self.look.palette]
        drawing.rect(0, 0, 640, 400, SEA)
        shore = self._outline(0.0)
        drawing.path(shore, "none", stroke="#c9e9f2", stroke_width=14)
        drawing.path(shore, colours[0], fill_rule="evenodd", stroke=SHORE, stroke_width=1.6)
        top = 1.05 if self.look.palette == "alpine" else 0.82
        for index, colour in enumerate(colours[1:], 1):
            data = self._outline(top * index / len(colours))
            if data:
                drawing.path(data, colour, fill_rule="evenodd",
                             stroke=darker(mix(colour, "#b08a5a", 0.45), 0.08),
                             stroke_width=1.6 if index % 3 == 0 else 0.8)
        if not self.look.overview:
            between = " ".join(self._outline(top * (index + 0.5) / len(colours))
                               for index in range(1, len(colours)))
            drawing.path(between, "none", stroke="#8a6a4a", stroke_width=0.7, opacity=0.45)

    def _outline(self, level: float) -> str:
        return outline_path(self.grid.outlines(level), 640, 400)

    def _graticule(self) -> None:
        lines = " ".join([f"M{x} 0 V400" for x in range(80, 640, 80)]
                         + [f"M0 {y} H640" for y in range(80, 400, 80)])
        self.drawing.stroke(lines, "#4f6f86", 0.8, opacity=0.22)

    def _spot(self, low: float, high: float, tries: int = 80) -> Point:
        """A place on land between two heights and away from the edges."""
        for _ in range(tries):
            x, y = self.rng.uniform(50, 590), self.rng.uniform(44, 356)
            if low < self.field(x, y) < high:
                return x, y
        return 320.0, 210.0

    def _woods(self) -> None:
        for _ in range(7):
            x, y = self._spot(0.1, 0.5)
            for _ in range(9):
                px, py = x + self.rng.uniform(-34, 34), y + self.rng.uniform(-20, 20)
                if self.field(px, py) > 0.06:
                    self.drawing.path(f"M{number(px)} {number(py - 9)} l5 10 h-10 Z", "#6f9f66",
                                      opacity=0.8)

    def _stream(self) -> None:
        """Water runs downhill: from a high place, step by step, along the steepest fall."""
        for _ in range(2):
            x, y = self._spot(0.4, 2.0)
            points: List[Point] = [(x, y)]
            for _ in range(40):
                fall_x = self.field(x + 4, y) - self.field(x - 4, y)
                fall_y = self.field(x, y + 4) - self.field(x, y - 4)
                steep = math.hypot(fall_x, fall_y)
                if steep < 1e-4 or self.field(x, y) < 0 or not (-8 < x < 648 and -8 < y < 408):
                    break
                x, y = x - fall_x / steep * 13, y - fall_y / steep * 13
                if len(points) > 2 and math.hypot(x - points[-2][0], y - points[-2][1]) < 9:
                    break
                points.append((x, y))
            if len(points) > 4:
                self.drawing.stroke(smooth(points), SHORE, 2.6)

    def _dry(self, points: Sequence[Point]) -> bool:
        """Whether a way keeps to the land, judged at its points and halfway between them."""
        halves = [((x + u) / 2, (y + v) / 2) for (x, y), (u, v) in zip(points, points[1:])]
        return all(self.field(x, y) > 0.02 for x, y in [*points, *halves])

    def _roads(self) -> None:
        villages = [self._spot(0.03, 0.4) for _ in range(5)]
        for (x, y), (u, v) in zip(villages, villages[1:]):
            for bend in (20, -34, 60, -80, 110, -130):
                points = [(x, y), ((x * 2 + u) / 3 + bend * 0.3, (y * 2 + v) / 3 + bend),
                          ((x + u * 2) / 3 - bend * 0.2, (y + v * 2) / 3 + bend * 0.6), (u, v)]
                if self._dry(points):
                    self.drawing.stroke(smooth(points), "#c9a35f", 4.6)
                    self.drawing.stroke(smooth(points), "#fff6dc", 2.8)
                    break
        for x, y in villages:
            for _ in range(7):
                px, py = x + self.rng.uniform(-13, 13), y + self.rng.uniform(-10, 10)
                self.drawing.rect(round(px), round(py), 6, 5, "#b5604a", rx=1)

    def _frames(self) -> None:
        """On an overview, the sheets that show its parts more closely."""
        for x, y in ((70, 60), (250, 130), (430, 70), (140, 250), (400, 240)):
            shift = self.rng.uniform(-24, 24)
            self.drawing.rect(round(x + shift), round(y + shift * 0.5), 150, 100, "#d9483b", rx=4,
                              fill_opacity=0.08, stroke="#d9483b", stroke_width=3)

    def _route(self) -> None:
        """A dashed trail of some length that does not get its feet wet."""
        for _ in range(200):
            start, end = self._spot(0.03, 0.6), self._spot(0.05, 1.4)
            points = self._winding(start, end)
            if math.hypot(end[0] - start[0], end[1] - start[1]) > 210 and self._dry(points):
                break
        self.drawing.stroke(smooth(points), "#ffffff", 8, opacity=0.85)
        self.drawing.stroke(smooth(points), "#d9372f", 4.4, stroke_dasharray="11 8")
        self.drawing.circle(*start, 9, "#ffffff")
        self.drawing.circle(*start, 6, "#d9372f")
        with self.drawing.group(move=end):
            self.drawing.path("M0 0 C-20 -22 -20 -44 0 -46 C20 -44 20 -22 0 0 Z", "#d9372f")
            self.drawing.circle(0, -29, 7, "#ffffff")

    def _winding(self, start: Point, end: Point) -> List[Point]:
        """A way that sways to both sides of the straight line."""
        east, south = end[0] - start[0], end[1] - start[1]
        length = math.hypot(east, south) or 1
        points = [start]
        for step in range(1, 9):
            share = step / 9
            sway = 46 * math.sin(share * 9 + self.rng.uniform(-0.8, 0.8)) * math.sin(math.pi * share)
            points.append((start[0] + east * share - south / length * sway,
                           start[1] + south * share + east / length * sway))
        return points + [end]

    def _summits(self) -> None:
        best = sorted(((self.field(x, y), x, y) for x in range(60, 600, 20) for y in range(50, 360, 20)),
                      reverse=True)
        chosen: List[Point] = []
        for height, x, y in best:
            if height > 0.2 and all(math.hypot(x - u, y - v) > 110 for u, v in chosen):
                chosen.append((x, y))
            if len(chosen) == 4:
                break
        for x, y in chosen:
            self.drawing.path(f"M{x} {y - 8} l8 13 h-16 Z", "#6b4b33")


def map_sheet(look: MapLook, seed: str) -> str:
    """The map itself, framed as on paper."""
    drawing = Drawing()
    _Sheet(drawing, look, seed).draw()
    drawing.rect(3, 3, 634, 394, "none", stroke="#fffdf4", stroke_width=6)
    drawing.rect(8, 8, 624, 384, "none", stroke="#4b4f52", stroke_width=1.6)
    _compass(drawing, 586, 54, 0.62)
    return drawing.render()


def _compass(drawing: Drawing, x: float, y: float, size: float) -> None:
    with drawing.group(move=(x, y), scale=size):
        drawing.circle(0, 0, 42, "#fffdf4", opacity=0.9)
        drawing.circle(0, 0, 36, "none", stroke="#7b858c", stroke_width=2.5)
        drawing.path("M0 -32 L9 0 L-9 0 Z", "#d9372f")
        drawing.path("M0 32 L9 0 L-9 0 Z", "#44505a")
        drawing.path("M-26 0 L0 -6 V6 Z M26 0 L0 -6 V6 Z", "#9aa4aa")


def map_picture(look: MapLook, seed: str) -> str:
    """The map unfolded on a coloured ground: four panels that catch the light differently."""
    drawing = Drawing()
    drawing.fill(drawing.slanted(*look.ground))
    for radius, opacity in ((300, 0.08), (220, 0.1)):
        drawing.circle(320, 200, radius, "#ffffff", opacity=opacity)
    drawing.path("M46 74 L596 62 L612 372 L60 384 Z", "#10202c", opacity=0.18)
    with drawing.group(move=(48, 30), turn=-1.6, scale=0.86):
        drawing.rect(-12, -12, 664, 424, "#fffdf4", rx=6)
        _Sheet(drawing, look, seed).draw()
        _cover_margin(drawing)
        for panel, (shade, opacity) in enumerate((("#ffffff", 0.0), ("#1b2a36", 0.10), ("#ffffff", 0.12),
                                                  ("#1b2a36", 0.10))):
            if opacity:
                drawing.rect(panel * 166 - 12, -12, 166, 424, shade, opacity=opacity)
        drawing.stroke("M154 -12 V412 M320 -12 V412 M486 -12 V412", "#ffffff", 1.6, opacity=0.7)
        drawing.stroke("M-12 200 H652", "#1b2a36", 1.2, opacity=0.16)
    _compass(drawing, 560, 320, 1.12)
    return drawing.render()


def _cover_margin(drawing: Drawing) -> None:
    """Contours run a little past the sheet; its white border is laid over their ends."""
    drawing.path("M-12 -12 H652 V412 H-12 Z M0 0 V400 H640 V0 Z", "#fffdf4", fill_rule="evenodd")
    drawing.rect(0, 0, 640, 400, "none", stroke="#4b4f52", stroke_width=1.4)
