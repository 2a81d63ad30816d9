"""Contour lines through a field of heights, as closed outlines that can be filled.

The field is sampled on a grid whose outermost cells are pushed below every level. No line can
then run out of the picture, every contour closes, and filling by the even-odd rule is right for
hills, hollows and islands alike.
"""

import math
from typing import Callable, Dict, List, Sequence, Tuple

from svg import Point

Field = Callable[[float, float], float]
Outline = List[Point]

# For each case of a cell's four corners (1 top left, 2 top right, 4 bottom right, 8 bottom left
# above the level), the edges that a line joins. Edges: 0 top, 1 right, 2 bottom, 3 left. The two
# saddles (5 and 10) are read as separate hills.
_CASES: Dict[int, Sequence[Tuple[int, int]]] = {
    1: ((3, 0),), 2: ((0, 1),), 3: ((3, 1),), 4: ((1, 2),), 5: ((3, 0), (1, 2)), 6: ((0, 2),),
    7: ((3, 2),), 8: ((2, 3),), 9: ((2, 0),), 10: ((0, 1), (2, 3)), 11: ((2, 1),), 12: ((1, 3),),
    13: ((1, 0),), 14: ((0, 3),),
}


class Grid:
    """A field of heights sampled over the area of a picture and a margin around it."""

    def __init__(self, field: Field, width: float, height: float, cell: float):
        margin = 2 * cell
        self._cell = cell
        self._left = -margin
        self._columns = math.ceil((width + 2 * margin) / cell) + 1
        self._rows = math.ceil((height + 2 * margin) / cell) + 1
        self._heights = [[self._sample(field, column, row) for column in range(self._columns)]
                         for row in range(self._rows)]

    def _sample(self, field: Field, column: int, row: int) -> float:
        if column in (0, self._columns - 1) or row in (0, self._rows - 1):
            return -1e6
        return field(self._left + column * self._cell, self._left + row * self._cell)

    def outlines(self, level: float) -> List[Outline]:
        """All closed lines at a level. Short ones, which would only look like dirt, are left out."""
        following = {}
        for row in range(self._rows - 1):
            for column in range(self._columns - 1):
                case = self._case(column, row, level)
                for start, end in _CASES.get(case, ()):
                    following[self._edge(column, row, start)] = self._edge(column, row, end)
        lines = []
        while following:
            edge = next(iter(following))
            line = []
            while edge in following:
                line.append(self._crossing(edge, level))
                edge = following.pop(edge)
            if len(line) > 7:
                lines.append(line)
        return lines

    def _case(self, column: int, row: int, level: float) -> int:
        upper, lower = self._heights[row], self._heights[row + 1]
        return ((upper[column] > level) + 2 * (upper[column + 1] > level)
                + 4 * (lower[column + 1] > level) + 8 * (lower[column] > level))

    @staticmethod
    def _edge(column: int, row: int, side: int) -> Tuple[int, int, bool]:
        """The name of an edge: its left or upper end, and whether it runs down. Cells share edges."""
        return {0: (column, row, False), 1: (column + 1, row, True), 2: (column, row + 1, False),
                3: (column, row, True)}[side]

    def _crossing(self, edge: Tuple[int, int, bool], level: float) -> Point:
        column, row, down = edge
        first = self._heights[row][column]
        second = self._heights[row + 1][column] if down else self._heights[row][column + 1]
        if min(first, second) < -1e5:
            # On the way to the margin the height falls without bound; stay at the inner end.
            share = 0.0 if second < first else 1.0
        else:
            share = (level - first) / (second - first)
        x = self._left + (column + (0 if down else share)) * self._cell
        y = self._left + (row + (share if down else 0)) * self._cell
        return x, y


def outline_path(lines: Sequence[Outline], width: float, height: float) -> str:
    """Path data for closed lines, rounded off: each corner becomes the control point of a curve.

    What lies outside the picture is moved to its edge. All points but the first are written
    relative to the one before, which halves the size of a map.
    """
    parts = []
    for line in lines:
        thinned = [(max(0.0, min(width, x)), max(0.0, min(height, y)))
                   for x, y in (line[::2] if len(line) > 24 else line)]
        corners = [(round(x), round(y)) for x, y in thinned]
        middles = [(round((x + u) / 2), round((y + v) / 2))
                   for (x, y), (u, v) in zip(thinned, thinned[1:] + thinned[:1])]
        at = middles[-1]
        steps = []
        for corner, middle in zip(corners, middles):
            if middle != at or corner != at:
                steps += [corner[0] - at[0], corner[1] - at[1], middle[0] - at[0], middle[1] - at[1]]
            at = middle
        parts.append(f"M{middles[-1][0]} {middles[-1][1]}q{' '.join(map(str, steps))}Z")
    return " ".join(parts)
