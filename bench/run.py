# SPDX-License-Identifier: GPL-3.0-or-later
"""Runs all benchmarks, and prints what came out as one table: each operation of Sprig beside the least that it could
cost, measured in the same run and alternating with it. Medians of all repetitions.

Usage: run.py BUILD RESULTS [PART…], where BUILD is a build folder with the benchmarks in it and RESULTS the file to
write, in which the samples of other parts stay. Without parts, all are measured but "growth", which takes two hours.
"""

import json
import os
import pathlib
import subprocess
import sys
import tempfile
import time

from rows import ROWS

HERE = pathlib.Path(__file__).resolve().parent
# By parts the programs, each with the repetitions of its benchmarks and which of them are run together.
PROGRAMS = [("config", "config", 15, "-curve"), ("files", "files", 15, "."), ("menu", "menu", 15, "-curve"),
            ("render", "render", 9, "."), ("bus", "bus", 1, "warm"), ("bus", "bus", 1, "cold"),
            ("curves", "config", 3, "curve"), ("curves", "menu", 3, "curve")]
USUAL_PARTS = {part for part, *_ in PROGRAMS} | {"start", "desktop", "felt"}
PARTS = USUAL_PARTS | {"growth"}
LISTS = 11  # of each length
STARTS = 100
HEAD = ("operation", "ours", "against", "floor", "ratio", "limit", "verdict")
# Of each file manager: the package that tells where it looks for modules, and its variable for that.
MODULES = {"thunar": ("thunarx-3", "extensionsdir"), "caja": ("libcaja-extension", "extensiondir"),
           "nemo": ("libnemo-extension", "extensiondir"), "nautilus": ("libnautilus-extension-4", "extensiondir")}
# Of each file manager, with our module and without.
SESSIONS = {"felt": 4, "growth": 1}


def environment(home):
    """One in which the user is Ann, who has nothing yet."""
    wrapper = next(pathlib.Path("/usr/lib").glob("*/libnss_wrapper.so"), None)
    assert wrapper, "libnss_wrapper.so is missing: install the Debian package libnss-wrapper"
    (home / "passwd").write_text(f"ann:x:{os.getuid()}:{os.getgid()}:Ann Example:{home}:/bin/sh\n")
    (home / "group").write_text(f"ann:x:{os.getgid()}:\n")
    return {"HOME": str(home), "USER": "ann", "PATH": "/usr/bin:/bin", "LC_ALL": "C.UTF-8", "TZ": "UTC",
            "TMPDIR": str(home), "LD_PRELOAD": str(wrapper), "NSS_WRAPPER_PASSWD": f"{home}/passwd",
            "NSS_WRAPPER_GROUP": f"{home}/group"}


def plain_name(name):
    """A benchmark's name without how it was run."""
    return "/".join(part for part in name.split("/") if ":" not in part and not part.endswith("_time"))


def nanoseconds(result):
    """Those of the processor, which other programs don't lengthen, unless there is something to wait for."""
    return result["real_time" if result["name"].endswith("_time") else "cpu_time"]


def run_program(build, name, repetitions, pattern, env):
    """The nanoseconds of each repetition, by benchmark. What is said goes into a file; the extension says a lot."""
    print(f"{name} ({pattern})" if pattern != "." else name, file=sys.stderr, flush=True)
    with open(build / f"bench/{name}.log", "wb") as log:
        output = subprocess.run(
            [build / f"bench/sprig-bench-{name}", f"--benchmark_filter={pattern}", "--benchmark_format=json",
             "--benchmark_enable_random_interleaving=true", f"--benchmark_repetitions={repetitions}",
             "--benchmark_min_time=0.02"],
            env=env, check=True, stdout=subprocess.PIPE, stderr=log).stdout
    samples = {}
    for result in json.loads(output)["benchmarks"]:
        assert not result.get("error_occurred"), f"{result['name']}: {result['error_message']}"
        if result["run_type"] == "iteration":
            samples.setdefault(plain_name(result["name"]), []).append(nanoseconds(result))
    return samples


def time_of(command, env, silence):
    begin = time.perf_counter_ns()
    process = os.posix_spawn(command[0], command, env, file_actions=[(os.POSIX_SPAWN_DUP2, silence, 1)])
    _, status = os.waitpid(process, 0)
    assert status == 0, f"{command} failed"
    return time.perf_counter_ns() - begin


def run_starts(build, env):
    print("start", file=sys.stderr, flush=True)
    commands = {"start/ours": (str(build / "bin/sprig"), "list"), "start/true": ("/bin/true",),
                "start/git": ("/usr/bin/git", "--version")}
    samples = {name: [] for name in commands}
    with open(os.devnull, "wb") as silence:
        for _ in range(STARTS):
            for name, command in commands.items():
                samples[name].append(time_of(command, env, silence.fileno()))
    return samples


def configure(home, templates):
    file = home / ".config/sprig/config.json"
    file.parent.mkdir(parents=True, exist_ok=True)
    file.write_text(json.dumps({"version": 1, "settings": {}, "templates": list(templates)}))


def numbered(number, **changes):
    return {"id": f"t{number}", "name": f"Template {number}", "extension": ".md", "filenamePattern": "Notes", "content": "x",
            "icon": "doc.text", "category": "notes", "enabled": True, "favorite": False, "requiresInput": False,
            "isBuiltin": False} | changes


def run_lists(build, home, env):
    """The start of `sprig list` with ever more templates."""
    print("lists", file=sys.stderr, flush=True)
    samples = {}
    with open(os.devnull, "wb") as silence:
        for count in (10, 100, 1_000, 10_000, 100_000):
            configure(home, map(numbered, range(count)))
            samples[f"curve/list/{count}"] = [time_of((str(build / "bin/sprig"), "list"), env, silence.fileno())
                                              for _ in range(LISTS)]
    return samples


# The most memory that a command takes, told by a process that has little itself: children begin with their parent's.
PEAK = """import resource, subprocess, sys
subprocess.run(sys.argv[1:], check=True, stdout=subprocess.DEVNULL)
print(resource.getrusage(resource.RUSAGE_CHILDREN).ru_maxrss)"""


def run_contents(build, home, env):
    """The most memory that `sprig new` takes for contents of so many bytes."""
    print("contents", file=sys.stderr, flush=True)
    samples = {}
    for size in (1_000_000, 10_000_000, 100_000_000, 900_000_000):
        configure(home, [numbered(1, content="of {{year}} " * (size // 12))])
        said = subprocess.run(["/usr/bin/python3", "-c", PEAK, build / "bin/sprig", "new", "t1"], cwd=home, env=env,
                              check=True, stdout=subprocess.PIPE).stdout
        samples[f"content/{size}"] = [1024 * int(said)]
        (home / "Notes.md").unlink()
    return samples


def folder_of_modules(manager):
    if manager == "dolphin":
        return max(pathlib.Path("/usr/lib").glob("*/qt*/plugins/kf*/kfileitemaction"))
    package, variable = MODULES[manager]
    return subprocess.run(["pkg-config", f"--variable={variable}", package], check=True, capture_output=True,
                          text=True).stdout.strip()


def run_session(build, manager, modules, script):
    """What a script measures in a session of its own, with these modules in place of the file manager's."""
    tests = HERE.parent / "tests"
    managers = tests / "filemanagers"
    output = subprocess.run(
        [managers / "session.sh", modules, folder_of_modules(manager), "/usr/bin/python3", "-B", HERE / script],
        env={**os.environ, "PYTHONPATH": f"{managers}:{tests}/support", "SPRIG_PROGRAMS": str(build / "bin"),
             "SPRIG_BENCH": str(build / "bench"), "SPRIG_MANAGER": manager,
             "SPRIG_WITH": "with" if modules == build / "modules" / manager else "without"},
        check=True, stdout=subprocess.PIPE).stdout
    return json.loads(output)


def run_desktop(build):
    """What needs a screen, with the module for Thunar in place."""
    print("desktop", file=sys.stderr, flush=True)
    return run_session(build, "thunar", build / "modules/thunar", "desktop.py")


def run_managers(build, part):
    """What the script of that name measures in each file manager."""
    samples = {}
    with tempfile.TemporaryDirectory(dir=build) as nothing:
        os.chmod(nothing, 0o755)  # the session is another user's
        for manager in (*MODULES, "dolphin"):
            print(f"{part} in {manager}", file=sys.stderr, flush=True)
            for _ in range(SESSIONS[part]):
                for modules in (build / "modules" / manager, pathlib.Path(nothing)):
                    for name, values in run_session(build, manager, modules, f"{part}.py").items():
                        samples.setdefault(name, []).extend(values)
    return samples


def measure(build, parts):
    samples = {}
    with tempfile.TemporaryDirectory(prefix="home-", dir=build) as home:
        env = environment(pathlib.Path(home))
        for part, *program in PROGRAMS:
            if part in parts:
                samples.update(run_program(build, *program, env))
        if "start" in parts:
            samples.update(run_starts(build, env))
        if "curves" in parts:
            samples.update(run_lists(build, pathlib.Path(home), env))
            samples.update(run_contents(build, pathlib.Path(home), env))
    if "desktop" in parts:
        samples.update(run_desktop(build))
    for part in SESSIONS.keys() & parts:
        samples.update(run_managers(build, part))
    return samples


def print_table(lines):
    widths = [max(len(line[column]) for line in [HEAD, *lines]) for column in range(len(HEAD))]
    for line in [HEAD, tuple("-" * width for width in widths), *lines]:
        print("| " + " | ".join(cell.ljust(width) for cell, width in zip(line, widths)) + " |")


def main():
    build, results = (pathlib.Path(argument).resolve() for argument in sys.argv[1:3])
    parts = set(sys.argv[3:] or USUAL_PARTS)
    if unknown := parts - PARTS:
        sys.exit(f"there is no part {', '.join(unknown)}; there are {', '.join(sorted(PARTS))}")
    samples = json.loads(results.read_text())["samples"] if results.exists() else {}
    samples.update(measure(build, parts))
    lines = [row.cells(samples) for row in ROWS if {row.ours, getattr(row, "floor", row.ours)} <= samples.keys()]
    print_table(lines)
    results.parent.mkdir(parents=True, exist_ok=True)
    results.write_text(json.dumps({"rows": [dict(zip(HEAD, line)) for line in lines], "samples": samples}, indent=1))
    print(f"\nAll samples are in {results}.")
    if "curves" in parts:
        picture = results.with_name("curves.svg")
        subprocess.run([sys.executable, "-B", HERE / "curves.py", results, picture], check=True)
        print(f"How operations grow is drawn in {picture}.")


main()
