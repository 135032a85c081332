# SPDX-License-Identifier: GPL-3.0-or-later
"""Runs clang-tidy over every source of the project, on all cores, and prints each finding once.

Nearly all of its time goes into the headers of libraries. So sources that are compiled alike are looked at together,
as one file that includes a few of them. Where the compiler objects to that, since two of them use one name for things
of their own, they are looked at one by one.

Usage: lint.py ROOT BUILD, where BUILD holds compile_commands.json.
"""

import concurrent.futures
import itertools
import json
import os
import pathlib
import re
import shlex
import shutil
import subprocess
import sys

FINDING = re.compile(r"^\S.*: (error|warning): ")
FOLDERS = ("src", "tests", "bench")
SOURCES_TOGETHER = 6
# Included sources count as headers, in which the analyzer would not follow the paths of functions.
TOGETHER_FLAGS = ("-Xclang", "-analyzer-opt-analyze-headers")


def own_sources(root, build):
    """The project's own sources, by folder and by how they are compiled."""
    groups = {}
    for command in json.loads((build / "compile_commands.json").read_text(encoding="utf-8")):
        file = pathlib.Path(os.path.normpath(command["file"]))
        folder = file.relative_to(root).parts[0] if file.is_relative_to(root) else None
        if folder in FOLDERS:
            words = shlex.split(command["command"])
            groups.setdefault((folder, tuple(words[1 : words.index("-o")])), set()).add(file)
    return groups


def batches(root, build):
    """Folder, flags and a few sources each; the largest first, so that no core is left with a long one at the end."""
    result = []
    for (folder, flags), files in own_sources(root, build).items():
        count = -(-len(files) // SOURCES_TOGETHER)
        result += [(folder, flags, sorted(files)[index::count]) for index in range(count)]
    return sorted(result, key=lambda batch: -sum(file.stat().st_size for file in batch[2]))


def clang_tidy(file, flags):
    """The findings in one file, each with the lines that show it."""
    run = subprocess.run(
        ["clang-tidy", "--quiet", str(file), "--", *flags], capture_output=True, text=True, check=False
    )
    found = []
    for line in run.stdout.splitlines():
        if FINDING.match(line) or not found:
            found.append(line)
        else:
            found[-1] += "\n" + line
    if run.returncode != 0 and not found:
        found.append(f"{file}: clang-tidy failed: {run.stderr}")
    return found


def findings(scratch, number, batch):
    folder, flags, files = batch
    if len(files) > 1:
        together = scratch / folder / f"{number}.cpp"
        together.write_text("".join(f'#include "{file}"\n' for file in files), encoding="utf-8")
        found = clang_tidy(together, flags + TOGETHER_FLAGS)
        if not any("clang-diagnostic-" in finding for finding in found):
            return found
    return list(itertools.chain.from_iterable(clang_tidy(file, flags) for file in files))


def prepare(root, build):
    """A place for the files that include sources, with the settings that hold beside the sources."""
    scratch = build / "lint"
    shutil.rmtree(scratch, ignore_errors=True)
    for folder in FOLDERS:
        (scratch / folder).mkdir(parents=True)
        for settings in (root / folder).glob(".clang-tidy"):
            shutil.copy(settings, scratch / folder)
    shutil.copy(root / ".clang-tidy", scratch)
    return scratch


def main():
    root, build = (pathlib.Path(argument).resolve() for argument in sys.argv[1:3])
    work = batches(root, build)
    if not work:
        sys.exit(f"{build}/compile_commands.json names no source below {root}")
    scratch = prepare(root, build)
    seen = set()
    with concurrent.futures.ThreadPoolExecutor(len(os.sched_getaffinity(0))) as pool:
        for run in [pool.submit(findings, scratch, *numbered) for numbered in enumerate(work)]:
            for finding in run.result():
                if finding not in seen:
                    seen.add(finding)
                    print(finding, flush=True)
    print(f"{sum(len(files) for *_, files in work)} files, {len(seen)} findings")
    sys.exit(1 if seen else 0)


main()
