"""A small writer for the SVG of the catalogue's pictures.

Only what a renderer for SVG Tiny 1.2 understands comes out of here: paths and basic shapes,
linear and radial gradients, opacity, and groups with transforms. There is no way to ask for a
filter, a mask, a clip path or text, so a picture cannot come to depend on one.
"""

from contextlib import contextmanager
from typing import Iterable, Iterator, Sequence, Tuple

Point = Tuple[float, float]

WIDTH = 640
HEIGHT = 400


def number(value: float) -> str:
    """Writes a number as short as one decimal place allows; the files stay small that way."""
    text = f"{value:.1f}".rstrip("0").rstrip(".") if isinstance(value, float) else str(value)
    return "0" if text in ("-0", "") else text


def fine(value: float) -> str:
    """Writes a number in the range of 0 to 1, where one decimal place would be too coarse."""
    text = f"{value:.3f}".rstrip("0").rstrip(".")
    return "0" if text in ("-0", "") else text


def mix(first: str, second: str, share: float) -> str:
    """The colour that lies at `share` of the way from the first colour to the second."""
    channels = []
    for at in (1, 3, 5):
        a, b = int(first[at:at + 2], 16), int(second[at:at + 2], 16)
        channels.append(round(a + (b - a) * share))
    return "#" + "".join(f"{channel:02x}" for channel in channels)


def lighter(colour: str, share: float = 0.2) -> str:
    return mix(colour, "#ffffff", share)


def darker(colour: str, share: float = 0.2) -> str:
    return mix(colour, "#101820", share)


def polygon(points: Iterable[Point], close: bool = True) -> str:
    """Path data of straight lines through the points."""
    corners = [f"{number(float(x))} {number(float(y))}" for x, y in points]
    return "M" + " L".join(corners) + (" Z" if close else "")


def smooth(points: Sequence[Point], close: bool = False) -> str:
    """Path data of a smooth curve through all the points."""
    count = len(points)

    def at(index: int) -> Point:
        if close:
            return points[index % count]
        return points[max(0, min(count - 1, index))]

    parts = [f"M{number(float(points[0][0]))} {number(float(points[0][1]))}"]
    for index in range(count if close else count - 1):
        before, start, end, after = (at(index + offset) for offset in (-1, 0, 1, 2))
        controls = (
            start[0] + (end[0] - before[0]) / 6, start[1] + (end[1] - before[1]) / 6,
            end[0] - (after[0] - start[0]) / 6, end[1] - (after[1] - start[1]) / 6,
            end[0], end[1])
        parts.append("C" + " ".join(number(float(value)) for value in controls))
    return " ".join(parts) + (" Z" if close else "")


class Drawing:
    """Collects shapes from back to front and renders them as one SVG document."""

    def __init__(self, width: int = WIDTH, height: int = HEIGHT):
        self._width = width
        self._height = height
        self._gradients = []
        self._shapes = []

    def _add(self, tag: str, attributes: dict) -> None:
        written = []
        for name, value in attributes.items():
            if value is None:
                continue
            if "opacity" in name:
                value = fine(value)
            elif not isinstance(value, str):
                value = number(value)
            written.append(f' {name.replace("_", "-")}="{value}"')
        self._shapes.append(f"<{tag}{''.join(written)}/>")

    def path(self, data: str, fill: str = "none", **attributes) -> None:
        self._add("path", {"d": data, "fill": fill, **attributes})

    def stroke(self, data: str, colour: str, width: float, **attributes) -> None:
        """A line. Its ends are round, as the outermost group says for all lines."""
        self._add("path", {"d": data, "fill": "none", "stroke": colour, "stroke_width": width,
                           **attributes})

    def circle(self, x: float, y: float, radius: float, fill: str, **attributes) -> None:
        self._add("circle", {"cx": x, "cy": y, "r": radius, "fill": fill, **attributes})

    def ellipse(self, x: float, y: float, rx: float, ry: float, fill: str, **attributes) -> None:
        self._add("ellipse", {"cx": x, "cy": y, "rx": rx, "ry": ry, "fill": fill, **attributes})

    def rect(self, x: float, y: float, width: float, height: float, fill: str,
             **attributes) -> None:
        self._add("rect", {"x": x, "y": y, "width": width, "height": height, "fill": fill,
                           **attributes})

    def fill(self, colour: str) -> None:
        """Covers the whole picture."""
        self.rect(0, 0, self._width, self._height, colour)

    @contextmanager
    def group(self, move: Point = (0, 0), scale: float = 1.0, turn: float = 0.0,
              mirror: bool = False, opacity: float = None) -> Iterator[None]:
        """Everything drawn inside is moved, then turned, then scaled and mirrored."""
        steps = []
        if move != (0, 0):
            steps.append(f"translate({number(float(move[0]))} {number(float(move[1]))})")
        if turn:
            steps.append(f"rotate({number(float(turn))})")
        if scale != 1.0 or mirror:
            steps.append(f"scale({fine(-scale if mirror else scale)} {fine(scale)})")
        attributes = f' transform="{" ".join(steps)}"' if steps else ""
        if opacity is not None:
            attributes += f' opacity="{fine(opacity)}"'
        self._shapes.append(f"<g{attributes}>")
        yield
        self._shapes.append("</g>")

    def _gradient(self, tag: str, geometry: str, stops: Sequence) -> str:
        name = f"g{len(self._gradients) + 1}"
        written = []
        for index, stop in enumerate(stops):
            colour, opacity = stop if isinstance(stop, tuple) else (stop, 1)
            faded = f' stop-opacity="{fine(opacity)}"' if opacity != 1 else ""
            offset = fine(index / (len(stops) - 1))
            written.append(f'<stop offset="{offset}" stop-color="{colour}"{faded}/>')
        self._gradients.append(f'<{tag} id="{name}" {geometry}>{"".join(written)}</{tag}>')
        return f"url(#{name})"

    def vertical(self, *stops) -> str:
        """A gradient from top to bottom. A stop is a colour or a (colour, opacity) pair."""
        return self._gradient("linearGradient", 'x1="0" y1="0" x2="0" y2="1"', stops)

    def slanted(self, *stops) -> str:
        """A gradient from the upper left to the lower right."""
        return self._gradient("linearGradient", 'x1="0" y1="0" x2="1" y2="1"', stops)

    def radial(self, *stops) -> str:
        """A gradient from the middle of the shape to its rim."""
        return self._gradient("radialGradient", 'cx="0.5" cy="0.5" r="0.5"', stops)

    def render(self) -> str:
        head = (f'<svg xmlns="http://www.w3.org/2000/svg" version="1.2" baseProfile="tiny" '
                f'width="{self._width}" height="{self._height}" '
                f'viewBox="0 0 {self._width} {self._height}">')
        defs = ["<defs>"] + self._gradients + ["</defs>"] if self._gradients else []
        rounded = '<g stroke-linecap="round" stroke-linejoin="round">'
        return "\n".join([head, *defs, rounded, *self._shapes, "</g>", "</svg>"]) + "\n"
