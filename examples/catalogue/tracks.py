"""Tracks of trails: from a few known places to a full line with heights, and to a GPX file."""

import math
import random
from typing import List, NamedTuple, Sequence, Tuple
from xml.sax.saxutils import escape

Anchor = Tuple[float, float, float]


class Track(NamedTuple):
    """A line of (latitude, longitude, height) with its length and the metres climbed along it."""
    points: List[Anchor]
    length_km: float
    ascent_m: int


def track(anchors: Sequence[Anchor], winding: float, rolling: float, seed: str,
          steps: int = 14) -> Track:
    """Leads a smooth line through the anchors and lets it wind, as a path in the country does.

    `winding` is how far, in metres, the line may stray from the straight way, and `rolling` how
    far it goes up and down beside the smooth slope between two anchors.
    """
    rng = random.Random(f"track {seed}")
    points: List[Anchor] = []
    for index in range(len(anchors) - 1):
        before, start, end, after = (anchors[max(0, min(len(anchors) - 1, index + offset))]
                                     for offset in (-1, 0, 1, 2))
        phase, beats = rng.uniform(0, 6.28), rng.uniform(1.5, 3.0)
        for step in range(steps):
            share = step / steps
            latitude, longitude, height = (_curve(before[axis], start[axis], end[axis], after[axis], share)
                                           for axis in range(3))
            # At an anchor the way must be where it is said to be, so it strays only between two.
            stray = winding * math.sin(math.pi * share) * math.sin(phase + beats * 6.28 * share)
            stray += winding * 0.2 * rng.uniform(-1, 1) * math.sin(math.pi * share)
            latitude += stray / 111_000
            longitude += stray * 0.8 / (111_000 * math.cos(math.radians(latitude)))
            height += rolling * math.sin(math.pi * share) * math.sin(phase + 12.57 * share)
            height += rng.uniform(-0.6, 0.6) if step else 0
            points.append((round(latitude, 5), round(longitude, 5), round(max(0.0, height), 1)))
    points.append((round(anchors[-1][0], 5), round(anchors[-1][1], 5), float(anchors[-1][2])))
    return Track(points, _length(points), _ascent(points))


def _curve(a: float, b: float, c: float, d: float, share: float) -> float:
    return 0.5 * (2 * b + (c - a) * share + (2 * a - 5 * b + 4 * c - d) * share ** 2
                  + (3 * b - a - 3 * c + d) * share ** 3)


def _length(points: Sequence[Anchor]) -> float:
    metres = 0.0
    for (lat, lon, _), (lat2, lon2, _) in zip(points, points[1:]):
        north = (lat2 - lat) * 111_195
        east = (lon2 - lon) * 111_195 * math.cos(math.radians((lat + lat2) / 2))
        metres += math.hypot(north, east)
    return round(metres / 1000, 1)


def _ascent(points: Sequence[Anchor]) -> int:
    """Metres climbed. Rises of less than three metres are taken for noise of the measurement."""
    climbed, low = 0.0, points[0][2]
    for _, _, height in points:
        if height > low + 3:
            climbed += height - low
            low = height
        elif height < low:
            low = height
    return round(climbed / 10) * 10


def gpx_file(title: str, line: Track) -> bytes:
    rows = "\n".join(f'      <trkpt lat="{lat:.5f}" lon="{lon:.5f}"><ele>{height:.1f}</ele></trkpt>'
                     for lat, lon, height in line.points)
    start, end = line.points[0], line.points[-1]
    ways = "\n".join(f'  <wpt lat="{lat:.5f}" lon="{lon:.5f}"><ele>{height:.1f}</ele><name>{name}</name></wpt>'
                     for (lat, lon, height), name in ((start, "Start"), (end, "Ziel")))
    return (f'<?xml version="1.0" encoding="UTF-8"?>\n'
            f'<gpx version="1.1" creator="nature catalogue" xmlns="http://www.topografix.com/GPX/1/1">\n'
            f'  <metadata><name>{escape(title)}</name></metadata>\n{ways}\n'
            f'  <trk>\n    <name>{escape(title)}</name>\n    <trkseg>\n{rows}\n'
            f'    </trkseg>\n  </trk>\n</gpx>\n').encode("utf-8")
