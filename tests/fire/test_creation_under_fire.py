# SPDX-License-Identifier: GPL-3.0-or-later
"""`sprig new` where others create files, too, or where Sprig is killed meanwhile."""

import contextlib
import os
import random
import subprocess
import time

import pytest
from conftest import FIRE
from sprigtest.home import need, template
from sprigtest.waiting import wait_for

THEIRS = {"Note.txt": "mine\n", "theirs": "x" * 5_000, ".sprig-hidden": "not a temporary file of Sprig"}


def content_of(size):
    """Some text by which a part can be told from the whole."""
    return "".join(f"{number}\n" for number in range(size // 4))[:size - 1] + "$"


def names_in(folder):
    return {file.name: file.read_text() for file in folder.iterdir()}


@contextlib.contextmanager
def file_system(home, *options):
    """A file system on the folder "demo"."""
    subprocess.run([need("mount", "mount"), *options, "sprig-fire", home.demo], check=True)
    yield
    subprocess.run(["umount", home.demo], check=True)


@pytest.fixture(params=["1m", "100k"], ids=["room for all", "nearly full"])
def filled(request, home):
    """A file system of some size with files of somebody else in it."""
    with file_system(home, "-t", "tmpfs", "-o", f"size={request.param}"):
        put_theirs(home)
        yield home


def put_theirs(home):
    for name, text in THEIRS.items():
        (home.demo / name).write_text(text)


def test_a_limit_on_file_sizes_is_explained_and_a_log_beyond_it_is_in_nobodys_way(home):
    def run_limited():
        return subprocess.run(["prlimit", "--fsize=100000", home.program, "new", "Note", "n"], cwd=home.demo,
                              env=home.env({}), text=True, capture_output=True)
    home.write(home.log, "x" * 150_000)
    put_theirs(home)
    home.configure(template("Note", content=content_of(200_000)))
    failed = run_limited()
    assert (failed.returncode, failed.stdout) == (3, "") and "Technical details:" in failed.stderr
    assert "File too large, larger than" in failed.stderr and names_in(home.demo) == THEIRS
    home.configure(template("Note", content="short"))
    assert run_limited().returncode == 0 and names_in(home.demo) == {**THEIRS, "n.txt": "short"}


class Creators:
    """Sprigs that are about to create "Note.txt", each with its own content."""

    def __init__(self, home, folder, count):
        wait = 'read -r pause; sleep "$pause"; exec "$0" new Note'
        self.processes = [subprocess.Popen(["sh", "-c", wait, home.program], cwd=folder, text=True,
                                           env=home.env({"USER": f"creator {number}"}), stdin=subprocess.PIPE,
                                           stdout=subprocess.PIPE, stderr=subprocess.PIPE) for number in range(count)]

    def begin(self, longest_pause):
        for process in self.processes:
            process.stdin.write(f"{random.uniform(0, longest_pause):.4f}\n")
            process.stdin.flush()

    def end(self):
        """What each wrote, by the name it told of; nothing but that may have been told."""
        results = [(process.communicate(), process.returncode) for process in self.processes]
        assert [(status, error) for (_, error), status in results] == [(0, "")] * len(results)
        return {os.path.basename(path.rstrip("\n")): f"by creator {number}"
                for number, ((path, _), _) in enumerate(results)}


@pytest.fixture(params=["folder", "tmpfs", "overlay"])
def shared(request, home):
    """A folder on a file system of its kind; the plain one is on the disk, whatever that has."""
    lower, upper, work = (home.path / name for name in ("lower", "upper", "work"))
    for folder in (lower, upper, work):
        folder.mkdir()
    options = {"tmpfs": ["-t", "tmpfs"],
               "overlay": ["-t", "overlay", "-o", f"userxattr,lowerdir={lower},upperdir={upper},workdir={work}"]}
    kind = options.get(request.param)
    with file_system(home, *kind) if kind else contextlib.nullcontext():
        yield home.demo


@pytest.mark.parametrize("count", [2, 4, 8])
def test_creators_of_one_name_lose_nothing_and_replace_nobodys_file(home, shared, count):
    home.configure(template("Note", content="by {{author}}"))
    for number in range(5 * FIRE):
        folder = shared / str(number)
        folder.mkdir()
        creators = Creators(home, folder, count)
        creators.begin(longest_pause=number % 2 * 0.02)
        wait_for(lambda: os.listdir(folder), between=lambda: None)
        theirs = {}
        for name in ("Note 2.txt", "Note 4.txt"):
            with contextlib.suppress(FileExistsError), open(folder / name, "x", encoding="utf-8") as file:
                theirs[name] = name
                file.write(name)
        made = creators.end()
        assert len(made) == count and names_in(folder) == {**made, **theirs}
    print(f"{5 * FIRE} times {count} creators of one name")


def test_what_comes_while_the_file_is_written_keeps_its_name_and_bytes(filled):
    home = filled
    (home.demo / "Note.txt").unlink()
    made = came = 0
    for _ in range(2 * FIRE):
        text = content_of(random.randrange(60_000, 110_000))
        home.configure(template("Note", content=text))
        process = subprocess.Popen([home.program, "new", "Note"], cwd=home.demo, env=home.env({}),
                                   stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        while len(os.listdir(home.demo)) < len(THEIRS) and process.poll() is None:
            pass
        expected = {name: THEIRS[name] for name in ("theirs", ".sprig-hidden")}
        with contextlib.suppress(FileExistsError):
            os.link(home.demo / "theirs", home.demo / "Note.txt")  # which takes no room
            expected["Note.txt"] = THEIRS["theirs"]
            came += 1
        if process.wait() == 0:
            expected["Note 2.txt" if "Note.txt" in expected else "Note.txt"] = text
            made += 1
        assert names_in(home.demo) == expected
        for file in home.demo.glob("Note*"):
            file.unlink()
    print(f"{2 * FIRE} files, before {came} of which another came; {made} of them made")


def killed_at_random(home, longest, once):
    """Runs Sprig and kills it, so many seconds at most after something can be asked."""
    process = subprocess.Popen([home.program, "new", "Note"], cwd=home.demo, env=home.env({}), stdout=subprocess.DEVNULL)
    wait_for(once, between=lambda: None)
    try:
        process.wait(random.uniform(0, longest))
    except subprocess.TimeoutExpired:
        process.kill()
        process.wait()


def test_whenever_sprig_is_killed_no_file_is_there_in_part(home):
    text = content_of(2_000_000)
    home.configure(template("Note", content=text))
    put_theirs(home)
    begin = time.monotonic()
    home.run("new", "Note")
    duration = time.monotonic() - begin
    whole = temporaries = 0
    for index in range(10 * FIRE):
        (home.demo / "Note 2.txt").unlink(missing_ok=True)
        # Every other time when it has begun to write.
        if index % 2:
            killed_at_random(home, duration / 20, once=lambda: len(os.listdir(home.demo)) > len(THEIRS))
        else:
            killed_at_random(home, duration, once=lambda: True)
        found = {name: content for name, content in names_in(home.demo).items() if THEIRS.get(name) != content}
        for name in found.keys() - {"Note 2.txt"}:
            assert name.startswith(".sprig-") and name not in THEIRS
            (home.demo / name).unlink()
            temporaries += 1
        assert found.get("Note 2.txt", text) == text
        whole += "Note 2.txt" in found
    assert names_in(home.demo).items() >= THEIRS.items()
    print(f"{10 * FIRE} kills within {duration * 1000:.0f} ms: {whole} left the file, {temporaries} a temporary one")
