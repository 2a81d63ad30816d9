"""Compiled texts: from the tables over a .ts file for each language to the .qm files.

The texts are found by their ids ("title-bird-robin"), not by a text in the source language.
"""

import shutil
import subprocess
import tempfile
from pathlib import Path
from typing import Dict, List, Optional, Sequence
from xml.sax.saxutils import escape, quoteattr

from model import Text

# Where the Qt 5 packages of common Linux distributions put a tool that is not on the PATH.
_USUAL_PLACES = ("/usr/lib/qt5/bin/lrelease", "/usr/lib64/qt5/bin/lrelease")


class TranslationError(Exception):
    pass


def find_lrelease(given: Optional[str]) -> str:
    if given:
        return given
    for candidate in (shutil.which("lrelease"), *_USUAL_PLACES):
        if candidate and Path(candidate).exists():
            return candidate
    raise TranslationError("lrelease was not found; name it with --lrelease")


def ts_source(language: str, texts: Dict[str, Text]) -> str:
    messages = "".join(
        f"    <message id={quoteattr(name)}>\n        <source></source>\n"
        f"        <translation>{escape(getattr(texts[name], language))}</translation>\n    </message>\n"
        for name in sorted(texts))
    return ('<?xml version="1.0" encoding="utf-8"?>\n<!DOCTYPE TS>\n'
            f'<TS version="2.1" language="{language}">\n<context>\n    <name></name>\n{messages}</context>\n</TS>\n')


def compile_texts(lrelease: str, language: str, texts: Dict[str, Text], interface: Sequence[Path] = ()) -> bytes:
    """The .qm file for a language, with the texts of the user interface merged in."""
    with tempfile.TemporaryDirectory() as scratch:
        source, target = Path(scratch, f"catalogue_{language}.ts"), Path(scratch, "texts.qm")
        source.write_text(ts_source(language, texts), encoding="utf-8")
        command: List[str] = [lrelease, "-silent", "-idbased", str(source), *map(str, interface), "-qm", str(target)]
        try:
            done = subprocess.run(command, capture_output=True, text=True)
        except OSError as error:
            raise TranslationError(f"{lrelease} cannot be run: {error.strerror}") from error
        if done.returncode != 0 or not target.exists():
            raise TranslationError(f"{lrelease} failed for the language {language}: {done.stderr.strip()}")
        return target.read_bytes()


def language_files(lrelease: str, texts: Dict[str, Text], interface_dir: Optional[Path]) -> Dict[str, bytes]:
    """All compiled files that the language packs name, "silent.qm" being one without any texts."""
    files = {"silent.qm": compile_texts(lrelease, "de", {})}
    for language in Text._fields:
        interface: List[Path] = []
        if interface_dir:
            interface.append(interface_dir / f"browser_{language}.ts")
            if not interface[0].is_file():
                raise TranslationError(f"{interface[0]} does not exist")
        files[f"texts_{language}.qm"] = compile_texts(lrelease, language, texts, interface)
    return files
