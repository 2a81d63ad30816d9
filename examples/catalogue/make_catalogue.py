#!/usr/bin/env python3
"""Writes the sample catalogue of nature guides, maps, trails and sounds into a directory.

    make_catalogue.py --output DIR [--lrelease PATH] [--interface-texts DIR]

The tables in the data modules are checked first; a fault in them is reported and nothing is
written. The catalogue is built beside the output directory and moved there when it is complete,
so an interrupted run leaves the old catalogue as it was. Two runs write the same bytes.
"""

import argparse
import json
import os
import shutil
import sys
from functools import partial
from pathlib import Path
from typing import Any, Dict, List, Sequence

# Compiled modules beside the sources would only be in the way of who reads or packs them.
sys.dont_write_bytecode = True

from catalogue import all_keywords, all_links, all_packages, all_texts  # noqa: E402
from graph import find_faults  # noqa: E402
from model import Keyword, Link, Package  # noqa: E402
from pictures import PICTURE_SIZE  # noqa: E402
from translations import TranslationError, find_lrelease, language_files  # noqa: E402

_PARTS = {"packages", "dictionary", "links"}


def _write_json(path: Path, value: Any) -> None:
    path.parent.mkdir(parents=True, exist_ok=True)
    text = json.dumps(value, ensure_ascii=False, indent=2) + "\n"
    path.write_text(text, encoding="utf-8", newline="\n")


def _manifest(package: Package, files: Sequence[str]) -> Dict[str, Any]:
    """What is unknown is left out, as a package made by hand would do."""
    manifest: Dict[str, Any] = {"title": f"id:title-{package.id}", "description": f"id:description-{package.id}"}
    if package.picture:
        manifest["picture"] = "picture.svg"
        manifest["pictureSize"] = PICTURE_SIZE
    if package.issue.year:
        manifest["year"] = package.issue.year
    manifest["version"] = package.issue.version
    manifest["edition"] = package.issue.edition
    manifest["featured"] = package.featured
    manifest["license"] = f"id:license-{package.licence}"
    manifest.update(package.details)
    manifest["files"] = sorted(files)
    return manifest


def _write_package(root: Path, package: Package) -> None:
    directory = root / "packages" / Path(*package.type.split(":")) / package.id
    directory.mkdir(parents=True)
    files = {name: make() for name, make in package.files.items()}
    if package.picture:
        files["picture.svg"] = package.picture().encode("utf-8")
    for name, content in files.items():
        (directory / name).write_bytes(content)
    _write_json(directory / "manifest.json", _manifest(package, list(files)))


def _write_keyword(root: Path, keyword: Keyword) -> None:
    content: Dict[str, Any] = {"type": keyword.type}
    if keyword.type == "literal":
        content["string"] = keyword.literal
    elif keyword.type == "noun":
        content["strings"] = {language: [{"sg": singular, "pl": plural} for singular, plural in strings]
                              for language, strings in (("de", keyword.de), ("en", keyword.en))}
    else:
        content["strings"] = {"de": list(keyword.de), "en": list(keyword.en)}
    _write_json(root / "dictionary" / f"{keyword.id}.json", content)


def _write_link(root: Path, link: Link) -> None:
    """The name of a link file has no meaning; it only has to be unique and free of further dots."""
    name = f"{link.start}--{link.type.replace('_', '-')}--{link.end}.json"
    _write_json(root / "links" / name, {"from": link.start, "to": link.end, "type": link.type})


def _add_compiled_texts(packages: Sequence[Package], compiled: Dict[str, bytes]) -> None:
    for package in packages:
        if package.type == "translation":
            for name in package.details.values():
                package.files[name] = partial(bytes, compiled[name])


def _replace(target: Path, finished: Path) -> None:
    """Puts the finished directory in the place of the old one, which is removed only afterwards."""
    outdated = target.with_name(f".{target.name}.{os.getpid()}.old")
    if target.exists():
        target.rename(outdated)
    try:
        finished.rename(target)
    except OSError:
        if outdated.exists():
            outdated.rename(target)
        raise
    shutil.rmtree(outdated, ignore_errors=True)


def _refuse_foreign_directory(target: Path) -> None:
    """The old output is deleted as a whole, so it had better be a catalogue."""
    if target.exists() and (not target.is_dir() or not {entry.name for entry in target.iterdir()} <= _PARTS):
        raise OSError(f"{target} exists and is not a catalogue; it is left alone")


def build(target: Path, packages: Sequence[Package], keywords: Sequence[Keyword], links: Sequence[Link]) -> None:
    _refuse_foreign_directory(target)
    target.parent.mkdir(parents=True, exist_ok=True)
    growing = target.with_name(f".{target.name}.{os.getpid()}.part")
    shutil.rmtree(growing, ignore_errors=True)
    try:
        for part in _PARTS:
            (growing / part).mkdir(parents=True)
        for package in packages:
            _write_package(growing, package)
        for keyword in keywords:
            _write_keyword(growing, keyword)
        for link in links:
            _write_link(growing, link)
        _replace(target, growing)
    finally:
        shutil.rmtree(growing, ignore_errors=True)


def main(arguments: List[str]) -> int:
    parser = argparse.ArgumentParser(description="Writes the sample catalogue of nature packages.")
    parser.add_argument("--output", required=True, type=Path, help="directory of the catalogue; replaced as a whole")
    parser.add_argument("--lrelease", help="the tool that compiles .ts files; searched for if not given")
    parser.add_argument("--interface-texts", type=Path,
                        help="directory with browser_de.ts and browser_en.ts, to be compiled in as well")
    options = parser.parse_args(arguments)

    try:
        packages, keywords = all_packages(), all_keywords()
        links, texts = all_links(packages, keywords), all_texts(packages)
        faults = find_faults(packages, keywords, links, texts)
        for fault in faults:
            print(f"make_catalogue: {fault}", file=sys.stderr)
        if faults:
            return 1
        compiled = language_files(find_lrelease(options.lrelease), texts, options.interface_texts)
        _add_compiled_texts(packages, compiled)
        build(Path(os.path.abspath(options.output)), packages, keywords, links)
    except KeyError as error:
        print(f"make_catalogue: the tables refer to {error}, which none of them defines", file=sys.stderr)
        return 1
    except (OSError, TranslationError) as error:
        print(f"make_catalogue: {error}", file=sys.stderr)
        return 1
    print(f"{options.output}: {len(packages)} packages, {len(keywords)} keywords, {len(links)} links")
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
