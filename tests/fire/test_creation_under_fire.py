"""`sprig new` where a file can't be created, or where Sprig is killed while it does."""

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


@pytest.fixture
def mounted(home):
    """Mounts a file system on the folder "demo", with files of somebody else in it."""
    def mount(*options):
        subprocess.run([need("mount", "mount"), *options, "sprig-fire", home.demo], check=True)

    def make(options, more=None):
        mount("-t", "tmpfs", "-o", options)
        for name, text in THEIRS.items():
            (home.demo / name).write_text(text)
        if more:
            mount("-o", f"remount,{more}")
    yield make
    subprocess.run(["umount", home.demo], check=True)


def fails(home, result, reason):
    """Says why, and nothing has changed."""
    assert (result.returncode, result.stdout) == (3, ""), result
    assert result.stderr.startswith("sprig: Couldn't create the file.\n"
                                    "  The folder may be read-only or unavailable.\n\n  Technical details:\n")
    assert reason in result.stderr
    assert names_in(home.demo) == THEIRS


@pytest.mark.parametrize("options, more, name, reason", [
    ("size=100k", None, "n", "No space left on device (ENOSPC)"),
    (f"nr_inodes={len(THEIRS) + 1}", None, "n", "No space left on device (ENOSPC)"),
    ("size=1m", "ro", "n", "Read-only file system (EROFS)"),
    ("size=1m", None, "n" * 252, "File name too long (ENAMETOOLONG)"),  # and ".txt"
], ids=["disk full", "no inodes", "read-only", "long name"])
def test_where_no_file_can_be_created_nothing_changes_and_the_alert_says_why(home, mounted, options, more, name, reason):
    home.configure(template("Note", content=content_of(200_000)))
    mounted(options, more)
    fails(home, home.run("new", "Note", name), reason)


def test_on_a_disk_that_is_nearly_full_a_file_is_there_whole_or_not_at_all(home, mounted):
    mounted("size=100k")
    made = 0
    for _ in range(10 * FIRE):
        text = content_of(random.randrange(60_000, 120_000))
        home.configure(template("Note", content=text))
        result = home.run("new", "Note")
        if result.returncode:
            fails(home, result, "ENOSPC")
        else:
            assert names_in(home.demo) == {**THEIRS, "Note 2.txt": text}
            (home.demo / "Note 2.txt").unlink()
            made += 1
    print(f"{10 * FIRE} files on a nearly full disk, {made} of them made")


def test_a_folder_that_goes_during_the_prompt_is_not_made_again(home):
    home.configure(template("Note"))
    session = home.sprig("demo", cwd=home.path).at_menu().types("1\r").sees("Enter a name", "> Note.txt")
    home.demo.rename(home.path / "elsewhere")
    session.types("\r").sees("Couldn't create the file.", "No such file or directory (ENOENT)").ends(3)
    assert not home.demo.exists() and list((home.path / "elsewhere").iterdir()) == []


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
    for name, content in THEIRS.items():
        (home.demo / name).write_text(content)
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
