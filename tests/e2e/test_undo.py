# SPDX-License-Identifier: GPL-3.0-or-later
"""Taking creations back."""

import pytest

from sprigtest.home import template


@pytest.fixture(autouse=True)
def reports(home):
    home.configure(template("Report"))


def created(home, name):
    return home.run("new", "Report", "--", name).stdout


def answer(result):
    return result.returncode, result.stdout, result.stderr


def test_undo_goes_all_the_way_down_to_the_trash(home):
    first, last = created(home, "a\nb"), created(home, "-v")
    made = home.demo / "-v.txt"
    listed = home.run("undo", "--list").stdout.splitlines()
    assert [line[16:] for line in listed] == [f"  {home.demo}/-v.txt", f"  {home.demo}/a^Jb.txt"]
    assert not [line for line in listed if not line.startswith("20") or line[13] != ":"]
    assert made.exists()
    assert answer(home.run("undo")) == (0, last, "")
    assert answer(home.run("undo")) == (0, first, "")
    assert answer(home.run("undo")) == (1, "", "sprig: there is nothing to undo\n")
    assert answer(home.run("undo", "--list")) == (0, "", "")
    assert list(home.demo.iterdir()) == []
    trash = {file.name: file.read_text() for file in (home.path / ".local/share/Trash/files").iterdir()}
    assert trash == {"-v.txt": "Report in demo\n", "a\nb.txt": "Report in demo\n"}


def grow(file):
    file.write_text("mine")


def replace(file):
    file.rename(file.with_name("kept"))
    file.mkdir()


@pytest.mark.parametrize("touch, reason", [
    (grow, "“b.txt” has been changed since it was created"), (replace, "“b.txt” is something else now"),
    (lambda file: file.unlink(), "“b.txt” is no longer there"),
])
def test_undo_leaves_a_touched_file_and_goes_on_with_the_one_before(home, touch, reason):
    before = created(home, "a")
    created(home, "b")
    touch(home.demo / "b.txt")
    left = sorted(file.name for file in home.demo.iterdir())
    assert f"b.txt  ({reason})" in home.run("undo", "--list").stdout
    status, printed, said = answer(home.run("undo"))
    assert (status, printed) == (3, "") and said.startswith(f"sprig: {reason}, so nothing was done")
    assert sorted(file.name for file in home.demo.iterdir()) == left
    assert answer(home.run("undo")) == (0, before, "")


def test_undo_removes_the_file_where_there_is_no_trash(home):
    made = created(home, "a")
    trash = home.write(".local/share/Trash", "no folder")
    assert answer(home.run("undo", PATH="/nowhere")) == (
        0, made, "sprig: there is no trash for it, so it was removed\n")
    made = created(home, "b")
    assert home.run("undo").returncode == 0
    assert list(home.demo.iterdir()) == [] and trash.read_text() == "no folder"
