# SPDX-License-Identifier: GPL-3.0-or-later
"""`sprig new` where others create files, too, or where Sprig is killed meanwhile."""

import concurrent.futures
import contextlib
import os
import random
import subprocess
import time

import pytest
from sprigtest.home import need, template, throw_away_home
from sprigtest.terminal import TerminalHome
from sprigtest.waiting import wait_for

# 1 for the short form, 100 for the long one.
FIRE = int(os.environ.get("SPRIG_FIRE", "1"))
THEIRS = {"Note.txt": "mine\n", "theirs": "x" * 5_000, ".sprig-hidden": "not a temporary file of Sprig"}


def content_of(size):
    """Some text by which a part can be told from the whole."""
    return "".join(f"{number}\n" for number in range(size // 4))[:size - 1] + "$"


def names_in(folder):
    return {file.name: file.read_text() for file in folder.iterdir()}


@pytest.fixture
def home():
    with throw_away_home(TerminalHome) as result:
        yield result


def put_theirs(home):
    for name, text in THEIRS.items():
        (home.demo / name).write_text(text)


def test_a_limit_on_file_sizes_is_explained_and_a_log_beyond_it_is_in_nobodys_way(home):
    command = "prlimit", "--fsize=100000", home.program, "new", "Note", "n"
    home.write(home.log, "x" * 150_000)
    put_theirs(home)
    home.configure(template("Note", content=content_of(200_000)))
    failed = home.run_command(*command)
    assert (failed.returncode, failed.stdout) == (3, "") and "Technical details:" in failed.stderr
    assert "File too large, larger than" in failed.stderr and names_in(home.demo) == THEIRS
    home.configure(template("Note", content="short"))
    assert home.run_command(*command).returncode == 0 and names_in(home.demo) == {**THEIRS, "n.txt": "short"}


@pytest.fixture(params=["folder", "tmpfs", "overlay"])
def shared(request, home):
    """A folder on a file system of its kind; the plain one is on the disk, whatever that has."""
    lower, upper, work = (home.path / name for name in ("lower", "upper", "work"))
    for folder in (lower, upper, work):
        folder.mkdir()
    options = {"folder": ["--bind", home.demo], "tmpfs": ["-t", "tmpfs", "sprig-fire"], "overlay": [
        "-t", "overlay", "-o", f"userxattr,lowerdir={lower},upperdir={upper},workdir={work}", "sprig-fire"]}
    subprocess.run([need("mount", "mount"), *options[request.param], home.demo], check=True)
    yield home.demo
    subprocess.run(["umount", home.demo], check=True)


def create(home, folder, longest_pause, creator):
    """The name that Sprig tells of, and what the file should hold."""
    time.sleep(random.uniform(0, longest_pause))
    made = home.run("new", "Note", cwd=folder, USER=f"creator {creator}")
    assert (made.returncode, made.stderr) == (0, "")
    return os.path.basename(made.stdout.rstrip("\n")), f"by creator {creator}"


@pytest.mark.parametrize("count", [2, 4, 8])
def test_creators_of_one_name_lose_nothing_and_replace_nobodys_file(home, shared, count):
    home.configure(template("Note", content="by {{author}}"))
    for number in range(5 * FIRE):
        folder = shared / str(number)
        folder.mkdir()
        theirs = {}
        with concurrent.futures.ThreadPoolExecutor(count) as creators:
            runs = [creators.submit(create, home, folder, number % 2 * 0.02, creator) for creator in range(count)]
            wait_for(lambda: os.listdir(folder))
            for name in ("Note 2.txt", "Note 4.txt"):
                with contextlib.suppress(FileExistsError), open(folder / name, "x", encoding="utf-8") as file:
                    theirs[name] = name
                    file.write(name)
        made = dict(run.result() for run in runs)
        assert len(made) == count and names_in(folder) == {**made, **theirs}
    print(f"{5 * FIRE} times {count} creators of one name")


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
