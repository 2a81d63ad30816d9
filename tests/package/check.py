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

CONSUMER = pathlib.Path(__file__).resolve().parent / "consumer"

LIBRARIES = ("TamselPackageManager", "Tamsel", "TamselAccount", "TamselCrypto", "TamselDataCore", "TamselNetwork",
             "TamselUtil")

# The strict defines and warnings that an application may well build with; no header may stand in their way.
HEADER_FLAGS = """
    -std=c++17 -fsyntax-only -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual -Werror
    -DQT_NO_CAST_FROM_ASCII -DQT_NO_CAST_TO_ASCII -DQT_NO_URL_CAST_FROM_STRING -DQT_NO_CAST_FROM_BYTEARRAY
    -DQT_NO_KEYWORDS -DQT_NO_FOREACH -DQT_DISABLE_DEPRECATED_BEFORE=0x050F00
""".split()


def fail_on(findings):
    if findings:
        sys.exit("\n".join(findings))


def run(*command, **options):
    """Runs a command that has to succeed and returns what it printed."""
    print("+", shlex.join(str(part) for part in command), flush=True)
    done = subprocess.run([str(part) for part in command], stdin=subprocess.DEVNULL, text=True,
                          stdout=subprocess.PIPE, check=False, **options)
    if done.returncode != 0:
        sys.exit(f"{done.stdout}\nended with {done.returncode}: {command[0]}")
    return done.stdout


class Package:
    def __init__(self, arguments):
        self.arguments = arguments
        self.work = pathlib.Path(arguments.work)
        self.prefix = self.work / "staging"
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

    def is_foreign(self, place):
        return place.startswith(self.arguments.build) and not place.startswith(str(self.prefix))

    def run_example(self, executable, **environment):
        output = run(executable, cwd=self.arguments.example,
                     env=dict(os.environ, QT_FATAL_WARNINGS="1", **environment))
        if output != "oak: Oak\n":
            sys.exit(f"The example printed: {output}")


def stage(package):
    """Installs the build and moves the tree to another place, where it has to work, too."""
    first = package.fresh_directory("installed")
    print(run(package.arguments.cmake, "--install", package.arguments.build, "--prefix", first))
    first.rename(package.fresh_directory("staging"))


def find_package(package):
    """The example of the README runs as CMake links it: the libraries find each other without any help."""
    build = package.fresh_directory("consumer-find-package")
    arguments = package.arguments
    print(run(arguments.cmake, "-S", CONSUMER, "-B", build, "-G", arguments.generator,
              f"-DCMAKE_CXX_COMPILER={arguments.compiler}",
              f"-DCMAKE_CXX_FLAGS={arguments.flags} -Wall -Wextra -Werror",
              f"-DCMAKE_PREFIX_PATH={package.prefix}", f"-DEXAMPLE={arguments.example}"))
    print(run(arguments.cmake, "--build", build))
    package.run_example(build / "consumer")


def pkg_config(package):
    """No flags but those of pkg-config."""
    flags = package.pkg_config("--cflags", "--libs")
    fail_on([f"lies outside the tree: {flag}" for flag in flags if package.is_foreign(flag[2:])])
    executable = package.fresh_directory("consumer-pkg-config") / "consumer"
    run(package.arguments.compiler, *package.flags, "-o", executable, f"{package.arguments.example}/main.cpp", *flags)
    package.run_example(executable, LD_LIBRARY_PATH=str(package.libdir))


def headers(package):
    """Public headers are complete, private ones absent, and none remembers where it came from."""
    files = [path for path in (package.prefix / "include").rglob("*") if path.is_file()]
    texts = {path: path.read_text(encoding="utf-8") for path in files}
    findings = [f"private: {path}" for path in package.prefix.rglob("*_p.h")]
    findings += [f"names the build tree: {path}" for path, text in texts.items() if package.arguments.build in text]
    forwarding = {path: path.parent / text.split('"')[1] for path, text in texts.items() if not path.suffix}
    for path, header in forwarding.items():
        if not re.search(rf"\b(?:class|struct)\s+(?:\w+_EXPORT\s+)?{path.name}\b[^;]*{{", texts.get(header, "")):
            findings.append(f"{header} does not define what {path} is named after")
    fail_on(findings if forwarding else [f"no headers below {package.prefix}"])

    compile_alone = [package.arguments.compiler, *HEADER_FLAGS, "-x", "c++", *package.pkg_config("--cflags")]
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        list(pool.map(lambda header: run(*compile_alone, "-include", header, os.devnull),
                      set(texts) - set(forwarding)))


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
    environment = {name: value for name, value in os.environ.items() if name != "LD_LIBRARY_PATH"}
    for path in package.libdir.rglob("*.so"):
        needs = [line.strip() for line in run("ldd", path, env=environment).splitlines()]
        fail_on([f"{path.name}: {line}" for line in needs
                 if "not found" in line or package.is_foreign(line.partition(" => ")[2])])


def unload(package):
    """The library stays when a plugin that used it goes: jobs on Qt's threads may still be running its code."""
    library = str((package.libdir / "libTamselPackageManager.so").resolve())
    # In an application that has all the others already. They would keep it if they came with it.
    others = re.findall(r"=> (/\S+)", run("ldd", library))
    code = (f"from _ctypes import dlopen, dlclose; others = [dlopen(path) for path in {others}];"
            f"dlclose(dlopen({library!r})); print(open('/proc/self/maps').read())")
    fail_on([] if library in run(sys.executable, "-c", code) else [f"unloaded: {library}"])


def main():
    tests = {"stage": stage, "find-package": find_package, "pkg-config": pkg_config,
             "headers": headers, "symbols": symbols, "linkage": linkage, "unload": unload}
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("test", choices=tests)
    for name in ("build", "work", "example", "libdir", "cmake", "generator", "compiler", "nm", "pkg-config"):
        parser.add_argument(f"--{name}", required=True)
    parser.add_argument("--flags", default="", help="compiler flags that the library was built with and needs")
    arguments = parser.parse_args()
    tests[arguments.test](Package(arguments))


if __name__ == "__main__":
    main()
