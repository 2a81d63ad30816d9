"""The pictures of all packages, by what they show."""

from data_bird_looks import BIRD_LOOKS
from data_texts import LanguagePack
from picture_backdrops import leaf
from picture_birds import bird_picture, sound_picture
from picture_flowers import flower_picture
from picture_maps import map_picture, map_sheet
from picture_scenes import trail_picture
from picture_trees import tree_picture
from svg import HEIGHT, WIDTH, Drawing, darker, lighter

__all__ = ["BIRD_LOOKS", "PICTURE_SIZE", "bird_picture", "flower_picture", "language_picture", "map_picture",
           "map_sheet", "sound_picture", "trail_picture", "tree_picture"]

PICTURE_SIZE = [WIDTH, HEIGHT]


def language_picture(pack: LanguagePack) -> str:
    """Two speech bubbles with lines of writing that nobody needs to be able to read."""
    ground, first, second = pack.colours
    drawing = Drawing()
    drawing.fill(drawing.slanted(ground, lighter(ground, 0.28)))
    for x, y, turn, length in ((70, 330, -60, 120), (110, 352, -20, 130), (40, 300, -100, 90), (570, 70, 130, 120),
                               (600, 40, 170, 130), (540, 40, 100, 90)):
        with drawing.group(move=(x, y), turn=turn):
            drawing.path(leaf(length), lighter(ground, 0.16))
            drawing.stroke(f"M0 0 L{length * 0.8:.0f} 0", ground, 2.5, opacity=0.6)
    drawing.path("M366 92 H520 Q560 92 560 132 V212 Q560 252 520 252 H504 L512 300 L452 252 H366 Q326 252 326 212 "
                 "V132 Q326 92 366 92 Z", second)
    for y, length in ((136, 150), (168, 186), (200, 110)):
        drawing.stroke(f"M374 {y} h{length - 30}", lighter(second, 0.6), 11)
    drawing.path("M116 128 H316 Q360 128 360 172 V262 Q360 306 316 306 H214 L148 356 L162 306 H116 Q72 306 72 262 "
                 "V172 Q72 128 116 128 Z", darker(ground, 0.5), opacity=0.25)
    drawing.path("M112 120 H312 Q356 120 356 164 V254 Q356 298 312 298 H210 L144 348 L158 298 H112 Q68 298 68 254 "
                 "V164 Q68 120 112 120 Z", first)
    for y, length in ((168, 190), (208, 214), (248, 120)):
        drawing.stroke(f"M112 {y} h{length - 14}", lighter(first, 0.65), 13)
    return drawing.render()
