"""The plain records that the catalogue's tables are made of."""

from dataclasses import dataclass, field
from typing import Any, Callable, Dict, NamedTuple, Optional, Tuple


class Text(NamedTuple):
    """A text in both languages of the catalogue."""
    de: str
    en: str


class Issue(NamedTuple):
    """When a package first appeared, how often it was revised, and its present edition."""
    year: Optional[int]
    version: int
    edition: str


class Link(NamedTuple):
    """One edge of the index graph, as it is written to a link file."""
    type: str
    start: str
    end: str


@dataclass(frozen=True)
class Keyword:
    """One word of the dictionary.

    The strings are pairs of singular and plural for a noun, plain strings otherwise; several in
    one language are synonyms, and the first is the one that is shown. A literal has no language.
    """
    id: str
    type: str
    de: Tuple = ()
    en: Tuple = ()
    literal: str = ""
    links: Tuple[Tuple[str, str], ...] = ()


@dataclass
class Package:
    """One package, complete but for being written to disk."""
    id: str
    type: str
    title: Text
    description: Text
    issue: Issue
    links: Tuple[Tuple[str, str], ...]
    licence: str = "attribution"
    featured: bool = False
    details: Dict[str, Any] = field(default_factory=dict)
    picture: Optional[Callable[[], str]] = None
    files: Dict[str, Callable[[], bytes]] = field(default_factory=dict)
