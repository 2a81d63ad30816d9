"""Checks of the catalogue's tables, made before anything is written.

The index walks the links by rules of its own, which `keywords_of` and `leads_to_type` repeat here,
so that a table whose packages could not be found is turned down instead of shipped.
"""

import random
import re
from collections import defaultdict
from typing import Dict, Iterable, List, Sequence, Set, Tuple

from model import Keyword, Link, Package, Text

LINK_TYPES = ("is_a", "contains", "relates_to", "is_not_a", "is", "uses", "requires")
KEYWORD_TYPES = ("noun", "name", "adjective", "literal", "category")

# What may follow a link on the way from a package to its keywords; nothing follows the others.
_FORWARD = {"is_a": set(LINK_TYPES), "contains": {"contains", "relates_to"}, "relates_to": {"relates_to"},
            "is": {"relates_to"}}
# What may follow a link, read from the package, when a keyword asks which types lead to it.
_BACKWARD = {"contains": {"contains", "relates_to"}, "relates_to": {"relates_to"}, "is": {"contains"}}

Edges = Dict[str, List[Link]]


def find_faults(packages: Sequence[Package], keywords: Sequence[Keyword], links: Sequence[Link],
                texts: Dict[str, Text]) -> List[str]:
    """Everything that is wrong with the tables, as messages; the empty list if nothing is."""
    faults = list(_faulty_ids([*packages, *keywords]))
    faults += _faulty_texts(packages, texts)
    faults += _faulty_strings(keywords)
    faults += _faulty_links(packages, keywords, links)
    if not faults:
        # These follow links, which has no meaning, and may not end, unless the links are sound.
        faults += _cycles(links)
    if not faults:
        faults += _out_of_reach(packages, keywords, links)
    return faults


def _faulty_ids(nodes) -> Iterable[str]:
    seen: Set[str] = set()
    for node in nodes:
        if node.id in seen:
            yield f"the id {node.id} is used twice; packages and keywords share their ids"
        if not re.fullmatch(r"[a-z0-9]+(-[a-z0-9]+)*", node.id):
            yield f"the id {node.id} is not made of lower-case letters, digits and single hyphens"
        seen.add(node.id)


def _faulty_texts(packages: Sequence[Package], texts: Dict[str, Text]) -> Iterable[str]:
    for package in packages:
        for what, text in (("title", package.title), ("description", package.description)):
            for language, words in zip(Text._fields, text):
                if not words.strip():
                    yield f"package {package.id} has no {what} in the language {language}"
        values = [f"id:license-{package.licence}", *package.details.values()]
        for value in values:
            if isinstance(value, str) and value.startswith("id:") and value[3:] not in texts:
                yield f"package {package.id} refers to the unknown text {value[3:]}"


def _faulty_strings(keywords: Sequence[Keyword]) -> Iterable[str]:
    for keyword in keywords:
        if keyword.type not in KEYWORD_TYPES:
            yield f"keyword {keyword.id} has the unknown type {keyword.type}"
        if keyword.type == "literal":
            if not keyword.literal:
                yield f"the literal {keyword.id} is empty"
            continue
        for language in ("de", "en"):
            strings = getattr(keyword, language)
            firsts = [string[0] if keyword.type == "noun" else string for string in strings]
            if not firsts or not all(firsts):
                yield f"keyword {keyword.id} has an empty or missing string in the language {language}"


def _faulty_links(packages, keywords, links: Sequence[Link]) -> Iterable[str]:
    known = {node.id for node in [*packages, *keywords]}
    package_ids = {package.id for package in packages}
    seen: Set[Link] = set()
    parents: Dict[str, str] = {}
    for link in links:
        told = f"the link {link.start} {link.type} {link.end}"
        if link.type not in LINK_TYPES:
            yield f"{told} has an unknown type"
        for end in (link.start, link.end):
            if end not in known:
                yield f"{told} names {end}, which does not exist"
        if link in seen:
            yield f"{told} is given twice"
        if link.end in package_ids and link.type not in ("uses", "requires"):
            yield f"{told} leads to a package, which only uses and requires may do"
        if link.type == "is_a" and link.start in parents:
            yield f"{told} is a second is_a beside {parents[link.start]}; the order of packages would be left to chance"
        if link.type == "is_a":
            parents[link.start] = link.end
        seen.add(link)


def _cycles(links: Sequence[Link]) -> Iterable[str]:
    outgoing = _edges(links, lambda link: link.start)
    done: Set[str] = set()

    def visit(node: str, path: List[str]) -> Iterable[str]:
        if node in path:
            yield "the links run in a circle: " + " > ".join(path[path.index(node):] + [node])
            return
        if node in done:
            return
        for link in outgoing.get(node, ()):
            yield from visit(link.end, path + [node])
        done.add(node)

    for start in list(outgoing):
        yield from visit(start, [])


def _edges(links: Sequence[Link], key) -> Edges:
    edges: Edges = defaultdict(list)
    for link in links:
        edges[key(link)].append(link)
    return edges


def keywords_of(package: str, outgoing: Edges, is_keyword: Set[str], every_kind: bool = True) -> Set[str]:
    """The keywords that the index collects for a package.

    Without `every_kind` only the ways by which a type can be told are followed: neither what the
    package uses or requires nor its exclusions.
    """
    found: Set[str] = set()

    def follow(link: Link, allowed: Set[str]) -> None:
        if link.type not in allowed or link.end not in is_keyword:
            return
        found.add(link.end)
        for following in outgoing.get(link.end, ()):
            follow(following, kinds & _FORWARD.get(link.type, set()))

    kinds = set(LINK_TYPES) if every_kind else set(_FORWARD)
    for link in outgoing.get(package, ()):
        follow(link, kinds)
    if every_kind:
        found -= {link.end for link in outgoing.get(package, ()) if link.type == "is_not_a"}
    return found


def leads_to_type(keyword: str, wanted: str, incoming: Edges, types: Dict[str, str]) -> bool:
    """Whether the index offers a keyword for a type of packages.

    The index keeps the links of a way that turned out wrong on its stack, where they spoil the
    ways tried after it. What it answers can therefore depend on the order of the links.
    """
    def path(link: Link, stack: List[str]) -> bool:
        stack.append(link.type)
        own = types.get(link.start)
        if own is not None and (own + ":").startswith(wanted + ":"):
            allowed = {"is_a", "is", "relates_to", "contains"}
            for kind in reversed(stack):
                if kind not in allowed:
                    return False
                allowed = _BACKWARD.get(kind, allowed)
            return True
        if any(path(following, stack) for following in incoming.get(link.start, ())):
            return True
        stack.pop()
        return False

    return any(path(link, []) for link in incoming.get(keyword, ()))


def _out_of_reach(packages: Sequence[Package], keywords: Sequence[Keyword],
                  links: Sequence[Link]) -> Iterable[str]:
    outgoing = _edges(links, lambda link: link.start)
    is_keyword = {keyword.id for keyword in keywords}
    categories = {keyword.id for keyword in keywords if keyword.type == "category"}
    types = {package.id: package.type for package in packages}
    holders: Dict[str, Set[str]] = defaultdict(set)
    for package in packages:
        if not keywords_of(package.id, outgoing, is_keyword) & categories:
            yield f"package {package.id} reaches no category"
        for keyword in keywords_of(package.id, outgoing, is_keyword, every_kind=False):
            for wanted in _prefixes(package.type):
                holders[keyword].add(wanted)
    for keyword in is_keyword - {link.end for link in links}:
        if keyword not in {link.start for link in links}:
            yield f"keyword {keyword} is linked with nothing"
    for keyword, wanted in sorted(_left_to_chance(is_keyword, links, types, holders)):
        yield (f"whether keyword {keyword} is offered for the type {wanted} would depend on the order of the "
               f"links; link a package of that type to it directly")


def _left_to_chance(is_keyword: Set[str], links: Sequence[Link], types: Dict[str, str],
                    holders: Dict[str, Set[str]]) -> Set[Tuple[str, str]]:
    """Keywords and types for which the index is wrong in one of some arbitrary orders of the links."""
    wrong: Set[Tuple[str, str]] = set()
    all_types = {wanted for kind in types.values() for wanted in _prefixes(kind)}
    rng = random.Random("link order")
    for _ in range(12):
        shuffled = sorted(links)
        rng.shuffle(shuffled)
        incoming = _edges(shuffled, lambda link: link.end)
        for keyword in is_keyword:
            for wanted in all_types:
                if leads_to_type(keyword, wanted, incoming, types) != (wanted in holders[keyword]):
                    wrong.add((keyword, wanted))
    return wrong


def _prefixes(kind: str) -> List[str]:
    parts = kind.split(":")
    return [":".join(parts[:count]) for count in range(1, len(parts) + 1)]
