# SPDX-License-Identifier: GPL-3.0-or-later
"""Checks what no compiler does: that every source is built, nothing is left unfinished, and the documents are true
where they name files.

Usage: structure.py ROOT BUILD [FOLDER…], where BUILD holds compile_commands.json and leaves out the folders.
"""

import json
import os
import pathlib
import re
import sys

LINK = re.compile(r"\]\(([^)\s]+)\)")
NAMED_FILE = re.compile(r"`((?:src|tests|docs|scripts|packaging)/[\w./-]+)`")
HEADING = re.compile(r"^#+ +(.+)$", re.MULTILINE)
CODE_BLOCK = re.compile(r"^```.*?^```", re.MULTILINE | re.DOTALL)
LICENCE = re.compile(r"SPDX-License-" r"Identifier: (\S+)")
UNFINISHED = re.compile(r"\b(?:TO" r"DO|FIX" r"ME|XX" r"X)\b")
TEXT_FILES = {".h", ".cpp", ".py", ".sh", ".md", ".json", ".txt", ".cmake", ".1", ".bash", ".fish", ""}


def files_below(root):
    """The project's files, without what is built, belongs to git or may be no text."""
    for folder, folders, names in os.walk(root):
        folders[:] = [name for name in folders if name not in {"build", ".git", "__pycache__", ".pytest_cache", "seeds"}]
        yield from (pathlib.Path(folder, name) for name in names)


def sources_not_built(root, build, left_out):
    commands = json.loads((build / "compile_commands.json").read_text(encoding="utf-8"))
    built = {pathlib.Path(command["file"]).resolve() for command in commands}
    for file in files_below(root):
        is_left_out = any(file.is_relative_to(root / folder) for folder in left_out)
        if file.suffix == ".cpp" and file.resolve() not in built and not is_left_out:
            yield f"{file.relative_to(root)} is in no CMake target"


def unfinished(root):
    for file in files_below(root):
        if file.suffix not in TEXT_FILES:
            continue
        for number, line in enumerate(file.read_text(encoding="utf-8").splitlines(), 1):
            if UNFINISHED.search(line):
                yield f"{file.relative_to(root)}:{number}: unfinished: {line.strip()}"


def anchors(document):
    """The names under which a document's headings can be linked to."""
    for heading in HEADING.findall(CODE_BLOCK.sub("", document.read_text(encoding="utf-8"))):
        yield re.sub(r"[^\w\- ]", "", heading.lower()).replace(" ", "-")


def broken_references(root):
    for document in files_below(root):
        if document.suffix != ".md":
            continue
        text = CODE_BLOCK.sub("", document.read_text(encoding="utf-8"))
        for link in LINK.findall(text):
            if "://" in link:
                continue
            path, _, anchor = link.partition("#")
            target = document.parent / path if path else document
            if not target.exists():
                yield f"{document.relative_to(root)}: there is no {link}"
            elif anchor and anchor not in anchors(target):
                yield f"{document.relative_to(root)}: {target.name} has no heading {anchor}"
        for path in NAMED_FILE.findall(text):
            if not (root / path).exists():
                yield f"{document.relative_to(root)}: there is no {path}"


def without_licence(root):
    """Sources that don't say under which licence they are; that of what can't say so is in .reuse/dep5."""
    for file in files_below(root):
        is_source = file.suffix in {".h", ".cpp", ".py", ".sh", ".cmake", ".bash", ".fish"} or os.access(file, os.X_OK)
        first = file.read_text(encoding="utf-8").splitlines()[:3] if is_source else []
        said = LICENCE.search("\n".join(first))
        if is_source and not (said and (root / "LICENSES" / f"{said[1]}.txt").exists()):
            yield f"{file.relative_to(root)} has no line “SPDX-License-Identifier” with a licence in LICENSES"


def main():
    root, build = (pathlib.Path(argument).resolve() for argument in sys.argv[1:3])
    problems = [*sources_not_built(root, build, sys.argv[3:]), *unfinished(root), *broken_references(root),
                *without_licence(root)]
    print("\n".join(problems) or "nothing amiss")
    sys.exit(1 if problems else 0)


main()
