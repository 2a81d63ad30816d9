"""Puts the catalogue together: from the tables of species, maps and trails to packages and links.

How packages are linked decides what a search finds. A package takes over all keywords above the
one it is_a, and whatever those contain, are or relate to. Behind a relates_to link the walk only
goes on along further relates_to links, so a trail names the mountains it lies in at every level,
from the single range up to "landscapes", instead of relying on the ranges to pass that on.
"""

from functools import partial
from typing import Dict, List, Tuple

import data_keywords as words
import pictures
from data_birds import BIRDS, Bird
from data_flowers import FLOWERS, Flower
from data_hikes import HIKES, Trail
from data_maps import BASE_MAPS, REGION_MAPS, BaseMap, RegionMap
from data_rides import RIDES
from data_sounds import RECORDINGS, Recording
from data_species_words import LATIN_OF_VOICES, SPECIES_WORDS
from data_texts import LABELS, LANGUAGE_PACKS, SHARED_TEXTS, LanguagePack
from data_trees import TREES, Tree
from model import Keyword, Link, Package, Text
from pages import guide_page, measure, months
from sounds import duration, levels, wave_file
from tracks import gpx_file, track

Links = List[Tuple[str, str]]


def _all(link_type: str, prefix: str, ids) -> Links:
    return [(link_type, f"{prefix}{name}") for name in ids]


def _encoded(draw) -> bytes:
    return draw().encode("utf-8")


def _named(noun: str) -> Text:
    """The plural of a noun, or what there is of it, in both languages."""
    german, english = (pairs[0][1] or pairs[0][0] for pairs in words.NOUNS[noun])
    return Text(german, english)


def _habitats(nouns) -> Text:
    named = [_named(noun) for noun in nouns]
    return Text(", ".join(text.de for text in named), ", ".join(text.en for text in named))


# --- guides --------------------------------------------------------------------------------

def _page(entry, facts: list) -> bytes:
    """Made only when the package is written, after the links have shown that all habitats exist."""
    facts = facts + [("habitats", _habitats(entry.habitats))]
    return guide_page(entry.title, entry.latin, entry.text, entry.tip, facts)


def _guide(kind: str, entry, links: Links, details: dict, facts: list, draw) -> Package:
    """What guides to birds, trees and flowers have in common."""
    common = ([("is_a", f"noun-{entry.id}")] + _all("relates_to", "noun-", entry.habitats)
              + _all("is", "adj-", entry.traits))
    return Package(
        f"{kind}-{entry.id}", f"guide:{kind}", entry.title, entry.text, entry.issue, tuple(common + links),
        featured=entry.featured, picture=draw, files={"text.html": partial(_page, entry, facts)},
        details={"latinName": entry.latin, **details, "monthFrom": entry.months[0], "monthTo": entry.months[1],
                 "text": "text.html"})


def _bird(bird: Bird) -> Package:
    links = _all("is_not_a", "", bird.without)
    if bird.recording:
        links.append((bird.recording, f"sound-{bird.id}"))
    facts = [("length", measure(bird.length_cm, "cm")), ("wingspan", measure(bird.wingspan_cm, "cm")),
             ("seen", months(bird.months))]
    return _guide("bird", bird, links, {"lengthCm": bird.length_cm, "wingspanCm": bird.wingspan_cm}, facts,
                  partial(pictures.bird_picture, pictures.BIRD_LOOKS[bird.id], bird.scene, bird.id))


def _tree(tree: Tree) -> Package:
    age = Text(*(pattern.format(tree.age_years) for pattern in LABELS["years"]))
    facts = [("height", measure(tree.height_m, "m")), ("age", age), ("blooms", months(tree.months))]
    return _guide("tree", tree, _all("is_not_a", "", tree.without),
                  {"heightM": tree.height_m, "ageYears": tree.age_years}, facts,
                  partial(pictures.tree_picture, tree.look, tree.id))


def _flower(flower: Flower) -> Package:
    facts = [("height", measure(flower.height_cm, "cm")), ("blooms", months(flower.months))]
    return _guide("flower", flower, [], {"heightCm": flower.height_cm}, facts,
                  partial(pictures.flower_picture, flower.look, flower.id))


# --- sounds, maps, trails, texts -----------------------------------------------------------

def _recording(entry: Recording) -> Package:
    links = ([("is_a", f"noun-{entry.id}"), ("contains", "lit-wav")]
             + _all("relates_to", "cat-", (entry.kind, "bird-sounds", "sounds")) + _all("is", "adj-", entry.traits))
    look = pictures.BIRD_LOOKS[entry.id]
    return Package(
        f"sound-{entry.id}", "sound:bird", entry.title, entry.text, entry.issue, tuple(links),
        featured=entry.featured, licence="public",
        picture=partial(pictures.sound_picture, look, entry.colours, levels(entry.notes, entry.id)),
        files={"call.wav": partial(wave_file, entry.notes, entry.id)},
        details={"durationS": duration(entry.notes, entry.id), "sound": "call.wav"})


def _scale_literal(scale: str) -> str:
    return "lit-scale-" + scale.split(":")[1].replace(" ", "")


def _map_links(entry, category: str) -> Links:
    return ([("is_a", f"cat-{category}")] + _all("contains", "name-", entry.names)
            + _all("relates_to", "cat-", entry.landscapes) + [("relates_to", _scale_literal(entry.scale))])


def _base_map(entry: BaseMap) -> Package:
    key = f"map-base-{entry.id}"
    return Package(
        key, "map:base", entry.title, entry.text, entry.issue, tuple(_map_links(entry, "overview-maps")),
        picture=partial(pictures.map_picture, entry.look, key) if entry.pictured else None,
        files={"map.svg": partial(_encoded, partial(pictures.map_sheet, entry.look, key))},
        details={"scale": entry.scale, "map": "map.svg"})


def _region_map(entry: RegionMap) -> Package:
    key = f"map-{entry.id}"
    links = _map_links(entry, "hiking-maps") + _all("relates_to", "noun-", entry.features)
    links.append(("requires", f"map-base-{entry.base}"))
    return Package(
        key, "map:region", entry.title, entry.text, entry.issue, tuple(links), featured=entry.featured,
        picture=partial(pictures.map_picture, entry.look, key) if entry.pictured else None,
        files={"map.svg": partial(_encoded, partial(pictures.map_sheet, entry.look, key))},
        details={"scale": entry.scale, "sizeKm": entry.size_km, "map": "map.svg"})


_REGIONS = {entry.id: entry for entry in REGION_MAPS}


def _trail(kind: str, entry: Trail) -> Package:
    region = _REGIONS[entry.region]
    line = track(entry.anchors, entry.winding, entry.rolling, entry.id)
    links = ([("is_a", f"cat-{entry.group}"), ("is", f"adj-{entry.difficulty}")]
             + _all("is", "adj-", entry.traits) + _all("contains", "noun-", entry.features)
             + _all("relates_to", "name-", region.names) + _all("relates_to", "cat-", region.landscapes)
             + [("requires", f"map-{region.id}")] + _all("uses", "", entry.uses) + _all("uses", "noun-", entry.gear)
             + _all("requires", "noun-", entry.must_have) + _all("is_not_a", "", entry.without))
    details = {"lengthKm": line.length_km, "ascentM": line.ascent_m,
               "difficulty": f"id:difficulty-{entry.difficulty}", "track": "track.gpx"}
    if entry.hours:
        details["hours"] = entry.hours
    return Package(
        entry.id, f"trail:{kind}", entry.title, entry.text, entry.issue, tuple(links), featured=entry.featured,
        licence=entry.licence,
        picture=partial(pictures.trail_picture, *entry.scene, entry.id),
        files={"track.gpx": partial(gpx_file, f"{entry.title.de} / {entry.title.en}", line)}, details=details)


def _language_pack(pack: LanguagePack) -> Package:
    """The compiled texts are not among its files here: they can only be made from all packages."""
    return Package(
        pack.id, "translation", pack.title, pack.text, pack.issue,
        (("is_a", "cat-language-packs"), ("relates_to", f"name-{pack.language}")), licence="public",
        picture=partial(pictures.language_picture, pack), details=dict(pack.files))


def all_packages() -> List[Package]:
    packages = [_bird(entry) for entry in BIRDS]
    packages += [_tree(entry) for entry in TREES]
    packages += [_flower(entry) for entry in FLOWERS]
    packages += [_recording(entry) for entry in RECORDINGS]
    packages += [_base_map(entry) for entry in BASE_MAPS]
    packages += [_region_map(entry) for entry in REGION_MAPS]
    packages += [_trail("hiking", entry) for entry in HIKES]
    packages += [_trail("cycling", entry) for entry in RIDES]
    packages += [_language_pack(entry) for entry in LANGUAGE_PACKS]
    return packages


# --- keywords, links, texts ----------------------------------------------------------------

def _latin_names() -> Dict[str, str]:
    names = {entry.id: entry.latin for table in (BIRDS, TREES, FLOWERS) for entry in table}
    return {**names, **LATIN_OF_VOICES}


def _latin_literal(latin: str) -> str:
    return "lit-" + latin.lower().replace(" ", "-")


def all_keywords() -> List[Keyword]:
    keywords = []
    for name, (parent, german, english, links) in words.CATEGORIES.items():
        up = [("is_a", f"cat-{parent}")] if parent else []
        keywords.append(Keyword(f"cat-{name}", "category", tuple(german), tuple(english), links=tuple(up + links)))
    latin = _latin_names()
    for name, (group, german, english) in SPECIES_WORDS.items():
        links = (("is_a", f"cat-{group}"), ("relates_to", _latin_literal(latin[name])))
        keywords.append(Keyword(f"noun-{name}", "noun", tuple(german), tuple(english), links=links))
    for name, (german, english) in words.NOUNS.items():
        keywords.append(Keyword(f"noun-{name}", "noun", tuple(german), tuple(english)))
    for kind, prefix, table in (("name", "name", words.NAMES), ("adjective", "adj", words.ADJECTIVES)):
        for name, (german, english) in table.items():
            keywords.append(Keyword(f"{prefix}-{name}", kind, tuple(german), tuple(english)))
    for name, text in words.LITERALS.items():
        keywords.append(Keyword(f"lit-{name}", "literal", literal=text))
    for name in latin.values():
        keywords.append(Keyword(_latin_literal(name), "literal", literal=name))
    return keywords


def all_links(packages: List[Package], keywords: List[Keyword]) -> List[Link]:
    return [Link(kind, node.id, end) for node in [*packages, *keywords] for kind, end in node.links]


def all_texts(packages: List[Package]) -> Dict[str, Text]:
    """Every text that a manifest refers to, by its id."""
    texts = dict(SHARED_TEXTS)
    for package in packages:
        texts[f"title-{package.id}"] = package.title
        texts[f"description-{package.id}"] = package.description
    return texts
