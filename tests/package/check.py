#!/usr/bin/env python3
"""Checks an installed tree from outside. Each subcommand is one test; "stage" has to come first."""

import argparse
import concurrent.futures
import os
import pathlib
import re
import shlex
import shutil
import subprocess
import sys

HERE = pathlib.Path(__file__).resolve().parent
CONSUMER = HERE / "consumer"

LIBRARIES = ("TamselPackageManager", "Tamsel", "TamselAccount", "TamselCrypto", "TamselDataCore", "TamselNetwork",
             "TamselUtil")
ROOMS = ("repository", "index", "storage", "presentation", "server", "database")

CATALOGUE = {
    "packages/plant/tree/oak/manifest.json": '{ "title": "Oak" }',
    "packages/plant/herb/yarrow/manifest.json": '{ "title": "Yarrow" }',
    "packages/animal/wren/manifest.json": '{ "title": "Wren" }',
    "dictionary/shade.json":
        '{ "type": "noun", "strings": { "en": [ { "sg": "shade", "pl": "shades" } ] } }',
    "links/oak-shade.json": '{ "from": "oak", "to": "shade", "type": "contains" }',
}
CATALOGUE_OUTPUT = """\
package animal wren Wren
package plant:herb yarrow Yarrow
package plant:tree oak Oak
keyword shade shade
"""

# The strict defines and warnings that an application may well build with; no header may stand in their way.
HEADER_FLAGS = """
    -std=c++17 -fsyntax-only -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual -Werror
    -DQT_NO_CAST_FROM_ASCII -DQT_NO_CAST_TO_ASCII -DQT_NO_URL_CAST_FROM_STRING -DQT_NO_CAST_FROM_BYTEARRAY
    -DQT_NO_KEYWORDS -DQT_NO_FOREACH -DQT_DISABLE_DEPRECATED_BEFORE=0x050F00
""".split()


class Failure(Exception):
    """The installed tree is not as it should be. The text says in what."""


def fail_on(findings):
    if findings:
        raise Failure("\n".join(findings))


def run(*command, **options):
    """Runs a command that has to succeed and returns what it printed."""
    print("+", shlex.join(str(part) for part in command), flush=True)
    done = subprocess.run([str(part) for part in command], stdin=subprocess.DEVNULL, text=True,
                          stdout=subprocess.PIPE, check=False, **options)
    if done.returncode != 0:
        raise Failure(f"{done.stdout}\nended with {done.returncode}: {command[0]}")
    return done.stdout


class Package:
    def __init__(self, arguments):
        self.arguments = arguments
        self.work = pathlib.Path(arguments.work)
        self.prefix = self.work / "staging"
        self.include = self.prefix / "include"
        self.libdir = self.prefix / arguments.libdir
        self.flags = shlex.split(arguments.flags)

    def fresh_directory(self, name):
        directory = self.work / name
        shutil.rmtree(directory, ignore_errors=True)
        directory.mkdir(parents=True)
        return directory

    def pkg_config(self, *options):
        environment = dict(os.environ, PKG_CONFIG_PATH=str(self.libdir / "pkgconfig"))
        return shlex.split(run(self.arguments.pkg_config, *options, "TamselPackageManager", env=environment))


def stage(package):
    """Installs the build. Installed once more over itself, as an update would be, it gives the same tree."""
    shutil.rmtree(package.prefix, ignore_errors=True)
    listings = []
    for _ in range(2):
        print(run(package.arguments.cmake, "--install", package.arguments.build, "--prefix", package.prefix))
        listings.append(sorted(package.prefix.rglob("*")))
    if listings[0] != listings[1]:
        raise Failure("a second install changes the list of files")


def check_consumer(package, executable, environment=None):
    catalogue = package.fresh_directory(f"catalogue-{executable.parent.name}")
    for name, text in CATALOGUE.items():
        path = catalogue / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(text + "\n", encoding="utf-8")
    output = run(executable, catalogue, env=dict(os.environ, **(environment or {})))
    if output != CATALOGUE_OUTPUT:
        raise Failure(f"expected:\n{CATALOGUE_OUTPUT}\nfound:\n{output}")


def find_package(package):
    """The consumer runs as CMake links it: the libraries find each other without any help."""
    build = package.fresh_directory("consumer-find-package")
    arguments = package.arguments
    print(run(arguments.cmake, "-S", CONSUMER, "-B", build, "-G", arguments.generator,
              f"-DCMAKE_CXX_COMPILER={arguments.compiler}",
              f"-DCMAKE_CXX_FLAGS={arguments.flags} -Wall -Wextra -Werror",
              f"-DCMAKE_PREFIX_PATH={package.prefix}"))
    print(run(arguments.cmake, "--build", build))
    cache = (build / "CMakeCache.txt").read_text(encoding="utf-8")
    found = re.search(r"^TamselPackageManager_DIR:\w+=(.*)$", cache, re.MULTILINE)
    if not found or package.prefix not in pathlib.Path(found.group(1)).parents:
        raise Failure(f"not the staged package: {found and found.group(1)}")
    check_consumer(package, build / "consumer")


def pkg_config(package):
    """No flags but those of pkg-config, in a tree that has been moved since it was installed."""
    build = package.fresh_directory("consumer-pkg-config")
    moved = Package(package.arguments)
    moved.prefix = build / "moved"
    moved.libdir = moved.prefix / package.arguments.libdir
    shutil.copytree(package.prefix, moved.prefix, symlinks=True)

    flags = moved.pkg_config("--cflags", "--libs")
    places = [flag[2:] for flag in flags if flag.startswith(("-L", "-I"))]
    fail_on([f"lies outside the moved tree: {place}" for place in places
             if place.startswith(package.arguments.build) and not place.startswith(str(moved.prefix))])

    executable = build / "consumer"
    run(package.arguments.compiler, *package.flags, "-o", executable, CONSUMER / "main.cpp", *flags)
    check_consumer(package, executable, {"LD_LIBRARY_PATH": str(moved.libdir)})


def self_contained(package, flags, header):
    done = subprocess.run(
        [package.arguments.compiler, *HEADER_FLAGS, "-x", "c++", *flags, "-include", str(header), os.devnull],
        stdin=subprocess.DEVNULL, text=True, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, check=False)
    return None if done.returncode == 0 else f"{header} does not compile alone:\n{done.stdout}"


def headers(package):
    """Public headers are complete, private ones absent, and none remembers where it came from."""
    found = sorted(package.include.rglob("*.h"))
    forwarding = [path for path in sorted(package.include.rglob("*")) if path.is_file() and not path.suffix]
    findings = [f"private: {path}" for path in package.prefix.rglob("*_p.h")]
    room = re.compile(r'#\s*include\s*[<"](?:' + "|".join(ROOMS) + ")/")
    for path in found + forwarding:
        text = path.read_text(encoding="utf-8")
        if room.search(text):
            findings.append(f"includes from a room of the source tree: {path}")
        if package.arguments.build in text:
            findings.append(f"names the build tree: {path}")
    if not found or not forwarding:
        findings.append(f"headers are missing below {package.include}")
    for path in forwarding:
        target = re.fullmatch(r'#include "(\w+\.h)"\n', path.read_text(encoding="utf-8"))
        if not target or not (path.parent / target.group(1)).is_file():
            findings.append(f"leads nowhere: {path}")
        elif not re.search(rf"\b(?:class|struct)\s+(?:\w+_EXPORT\s+)?{path.name}\b[^;]*{{",
                           (path.parent / target.group(1)).read_text(encoding="utf-8")):
            findings.append(f"{target.group(1)} does not define what {path} is named after")
    fail_on(findings)

    flags = package.pkg_config("--cflags")
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        results = pool.map(lambda header: self_contained(package, flags, header), found)
    fail_on([result for result in results if result])
    print(f"{len(found)} headers compile alone, {len(forwarding)} forwarding headers lead to them")


# Inline code of Qt and of the standard library is compiled into whoever uses it. Where the linker has to merge
# such copies across libraries it marks them weak (W, V) or unique (u); those carry the name of their own library.
FOREIGN_INLINE = re.compile(
    r"(?:(?:vtable|typeinfo|typeinfo name|VTT|guard variable) for )?"
    r"(?:[\w:<>*&, ]+ )?"
    r"(?:std::|__gnu_cxx::|Qt(?:Private|Concurrent|MetaTypePrivate|SharedPointer)::|Q[A-Z]\w*(?:<|::|$))")
OWN = re.compile(
    r"(?:(?:vtable|typeinfo|typeinfo name|VTT|guard variable) for |(?:non-)?virtual thunk to )?ts::")


def is_own(kind, name):
    # A template of Qt over one of our types, or our type's entry in Qt's registry of types, is weak.
    return OWN.match(name) or (kind in "WVu" and ("ts::" in name or FOREIGN_INLINE.match(name)))


def symbols(package):
    """The libraries export their own namespace and nothing else."""
    findings = []
    for library in LIBRARIES:
        path = package.libdir / f"lib{library}.so"
        lines = run(package.arguments.nm, "-D", "--defined-only", "--demangle", path).splitlines()
        exported = [tuple(line.split(" ", 2)[1:]) for line in lines]
        # The address sanitizer publishes a marker beside each of our variables.
        findings += [f"{path.name}: {kind} {name}" for kind, name in exported
                     if not is_own(kind, name) and not (package.flags and name.startswith("__odr_asan."))]
        if not any(kind in "TDBR" and OWN.match(name) for kind, name in exported):
            findings.append(f"{path.name}: exports nothing of its own")
    fail_on(findings)


def linkage(package):
    """Every shared object of the tree finds all that it needs without help from the environment."""
    objects = sorted(path for path in package.libdir.rglob("*.so*") if not path.is_symlink())
    environment = {name: value for name, value in os.environ.items() if name != "LD_LIBRARY_PATH"}
    findings = []
    for path in objects:
        needs = run("ldd", path, env=environment).splitlines()
        findings += [f"{path.name}: {line.strip()}" for line in needs if "not found" in line]
        findings += [f"{path.name} comes from the build tree: {line.strip()}" for line in needs
                     if package.arguments.build in line and str(package.prefix) not in line]
    if len(objects) < len(LIBRARIES):
        findings.append(f"only {len(objects)} shared objects below {package.libdir}")
    fail_on(findings)


def main():
    tests = {"stage": stage, "find-package": find_package, "pkg-config": pkg_config,
             "headers": headers, "symbols": symbols, "linkage": linkage}
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("test", choices=tests)
    for name in ("build", "work", "libdir", "cmake", "generator", "compiler", "nm", "pkg-config"):
        parser.add_argument(f"--{name}", required=True)
    parser.add_argument("--flags", default="", help="compiler flags that the library was built with and needs")
    arguments = parser.parse_args()
    try:
        tests[arguments.test](Package(arguments))
    except Failure as failure:
        print(failure)
        return 1
    return 0


if __name__ == "__main__":
    sys.exit(main())
