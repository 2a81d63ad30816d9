#!/usr/bin/env python3
"""The text of run-browser names the options of the browser without asking it. This compares the two."""

import re
import subprocess
import sys


def options(command):
    text = subprocess.run([command, "--help"], stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, text=True,
                          check=True).stdout
    return set(re.findall(r"(?<!\S)--[a-z][a-z-]*", text)) - {"--help-all"}


def main():
    script, browser = sys.argv[1:]
    told, known = options(script), options(browser)
    for option in sorted(known - told):
        print(f"{script} --help does not tell of {option}")
    for option in sorted(told - known):
        print(f"{script} --help tells of {option}, which the browser does not know")
    return 0 if known and told == known else 1


if __name__ == "__main__":
    sys.exit(main())
