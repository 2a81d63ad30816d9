"""What stands in the foreground of a trail's picture, on the point (x, y) of the ground."""

from svg import Drawing, darker, lighter


def signpost(drawing: Drawing, x: float, y: float, colour: str) -> None:
    """Two yellow boards that point different ways."""
    with drawing.group(move=(x, y)):
        drawing.ellipse(0, 4, 26, 6, "#28331f", opacity=0.25)
        drawing.rect(-5, -120, 10, 124, "#7a5a42", rx=3)
        drawing.rect(1, -120, 4, 124, "#624632", rx=2)
        drawing.circle(0, -126, 7, colour)
        for top, side in ((-108, 1), (-76, -1)):
            drawing.path(f"M{side * -20} {top} H{side * 44} L{side * 62} {top + 12} L{side * 44} {top + 24} "
                         f"H{side * -20} Z", "#f6cf4a")
            drawing.stroke(f"M{side * -8} {top + 12} H{side * 34}", "#8a6a20", 4)


def bicycle(drawing: Drawing, x: float, y: float, colour: str) -> None:
    with drawing.group(move=(x, y)):
        drawing.ellipse(0, 4, 96, 8, "#28331f", opacity=0.25)
        for hub in (-56, 56):
            drawing.stroke(f"M{hub} -38 L{hub - 26} -58 M{hub} -38 L{hub + 26} -58 M{hub} -38 L{hub - 30} -26 "
                           f"M{hub} -38 L{hub + 30} -26 M{hub} -38 V-6 M{hub} -38 V-70", "#dfe4e6", 1.8)
            drawing.circle(hub, -38, 36, "none", stroke="#2c2f36", stroke_width=6)
            drawing.circle(hub, -38, 5, "#2c2f36")
        drawing.stroke("M-56 -38 L-24 -92 L34 -92 L-4 -38 Z M-4 -38 L-30 -104 M56 -38 L30 -112", colour, 6)
        drawing.stroke("M30 -112 L24 -118 M24 -118 L44 -122 Q54 -116 46 -108", "#2c2f36", 5)
        drawing.stroke("M-44 -106 H-16", "#2c2f36", 9)
        drawing.circle(-4, -38, 9, "#2c2f36")
        drawing.stroke("M-4 -38 L8 -22 M2 -22 H14", "#2c2f36", 4)


def rucksack(drawing: Drawing, x: float, y: float, colour: str) -> None:
    """A rucksack and a stick, put down for a rest."""
    with drawing.group(move=(x, y)):
        drawing.ellipse(4, 4, 46, 7, "#28331f", opacity=0.25)
        drawing.stroke("M44 2 L20 -96", "#7a5a42", 5)
        drawing.rect(-32, -62, 56, 66, colour, rx=14)
        drawing.path("M-32 -40 V-50 Q-32 -66 -14 -66 H6 Q24 -66 24 -50 V-40 Q-4 -26 -32 -40 Z",
                     darker(colour, 0.2))
        drawing.rect(-22, -24, 36, 20, lighter(colour, 0.18), rx=6)
        drawing.rect(-28, -80, 48, 16, "#e9d9b0", rx=8)
        drawing.stroke("M-4 -46 V-34", "#f4e3b0", 5)
