#!/usr/bin/env python3
"""Splits a catalogue into what a package server is to have and what stays on the local disk.

    split_catalogue.py CATALOGUE --output DIR --served TYPE...

Packages whose type begins with one of the types go to DIR/served, the others to DIR/local. A ledger holds
links among its own packages and keywords only, so a link that leads from one part to the other stays
local, where its ends may be anywhere. Keywords, and the links among them, are in both parts.
"""

import argparse
import json
import shutil
import sys
from pathlib import Path
from typing import List, Set


def _package_ids(root: Path) -> Set[str]:
    return {manifest.parent.name for manifest in (root / "packages").rglob("manifest.json")}


def _copy_packages(catalogue: Path, target: Path, types: Set[str]) -> None:
    for directory in (catalogue / "packages").iterdir():
        if directory.name in types:
            shutil.copytree(directory, target / "packages" / directory.name)


def _copy_links(catalogue: Path, local: Path, served: Path) -> None:
    local_ids, served_ids = _package_ids(local), _package_ids(served)
    for part in (local, served):
        (part / "links").mkdir()
    for file in (catalogue / "links").iterdir():
        link = json.loads(file.read_text(encoding="utf-8"))
        ends = {link["from"], link["to"]}
        if not ends & local_ids:
            shutil.copy(file, served / "links")
        if not ends & served_ids or ends & local_ids:
            shutil.copy(file, local / "links")


def main(arguments: List[str]) -> int:
    parser = argparse.ArgumentParser(description="Splits a catalogue into a served and a local part.")
    parser.add_argument("catalogue", type=Path)
    parser.add_argument("--output", required=True, type=Path, help="directory of the parts; replaced as a whole")
    parser.add_argument("--served", required=True, nargs="+", help="first segments of the types to serve")
    options = parser.parse_args(arguments)

    shutil.rmtree(options.output, ignore_errors=True)
    local, served = options.output / "local", options.output / "served"
    types = {directory.name for directory in (options.catalogue / "packages").iterdir()}
    _copy_packages(options.catalogue, served, types & set(options.served))
    _copy_packages(options.catalogue, local, types - set(options.served))
    for part in (local, served):
        shutil.copytree(options.catalogue / "dictionary", part / "dictionary")
    _copy_links(options.catalogue, local, served)
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
