#!/usr/bin/env python3
"""Every link in the documents named leads to a file of the tree and, where it names one, to a heading in it. Every
test that they name, as in tst_program::function or tst_program::function:row, exists."""

import pathlib
import re
import sys

CODE = re.compile(r"^```.*?^```", re.MULTILINE | re.DOTALL)
LINK = re.compile(r"\]\(([^)#\s]*)(?:#([^)\s]+))?\)")
HEADING = re.compile(r"^#+ (.+)$", re.MULTILINE)
TEST = re.compile(r"\b(tst_\w+)::(\w+)(?::([^`]+))?")

TESTS = {path.stem: path.read_text(encoding="utf-8")
         for path in pathlib.Path(__file__).parent.parent.rglob("tst_*.cpp")}


def read(path):
    return CODE.sub("", path.read_text(encoding="utf-8"))


def anchors(path):
    return {re.sub(r"[^\w\- ]", "", heading.lower()).replace(" ", "-") for heading in HEADING.findall(read(path))}


def broken_links(document):
    for target, anchor in LINK.findall(read(document)):
        if re.match(r"\w+:", target):
            continue
        path = document.parent / target if target else document
        if not path.exists():
            yield f"{document}: no file {target}"
        elif anchor and anchor not in anchors(path):
            yield f"{document}: no heading {target}#{anchor}"


def missing_tests(document):
    for program, function, row in TEST.findall(read(document)):
        source = TESTS.get(program, "")
        if f"void {function}()" not in source or row not in source:
            yield f"{document}: no test {program}::{function} {row}"


def main():
    documents = [pathlib.Path(argument) for argument in sys.argv[1:]]
    checks = (broken_links, missing_tests)
    broken = [finding for document in documents for check in checks for finding in check(document)]
    print("\n".join(broken))
    return 1 if broken or not documents else 0


if __name__ == "__main__":
    sys.exit(main())
