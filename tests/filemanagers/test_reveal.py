# SPDX-License-Identifier: GPL-3.0-or-later
"""The new file is selected in the window that was clicked in, in each kind of view of the file manager."""

import os
import pathlib

import pytest
from driving import MANAGERS, Caja, Nemo
from sprigtest.home import template
from sprigtest.waiting import wait_for

MANAGER = MANAGERS[os.environ["SPRIG_MANAGER"]]


@pytest.fixture
def crowded(desktop, folder):
    """More files than there is room for, and where only files are: wherever a click is, it is one in the folder."""
    (folder / "letter.txt").unlink()
    (folder / "inner").rmdir()
    for number in range(500):
        (folder / f"file {number:03}.txt").touch()
    return folder


@pytest.fixture(params=MANAGER.views)
def view(desktop, request):
    MANAGER.choose_view(desktop, request.param)
    yield request.param
    MANAGER.choose_view(desktop, MANAGER.views[0])


def test_it_is_selected_in_sight_and_has_the_focus(desktop, crowded, open_manager, view):
    desktop.configure(template("zzz"), defaultBehavior="create")
    manager = open_manager(crowded)
    manager.open_menu(manager.middle())
    manager.pick("Sprig", "zzz")
    made = crowded / "zzz.txt"
    wait_for(lambda: manager.copies() == [made.as_uri()], "the file, and nothing else, to be what keys are for")
    wait_for(manager.is_scrolled_to_the_end, "the file to be in sight")
    desktop.picture(f"reveal-{view}")
    if MANAGER.keys_go_on_from_selection:
        desktop.press("Up")
        wait_for(lambda: "file%204" in " ".join(manager.copies()), "the keyboard to go on from there")
    assert len(manager.large_windows()) == 1


def test_it_is_shown_in_another_window_when_the_folder_was_left_meanwhile(desktop, folder, open_manager):
    desktop.configure(template("zzz"), defaultBehavior="prompt")
    manager = open_manager(folder)
    manager.open_menu(manager.background())
    manager.pick("Sprig", "zzz")
    desktop.prompt("New zzz")
    prompt = desktop.active_window()
    manager.leave_folder()
    desktop.activate(prompt)
    desktop.press("Return")
    wait_for(lambda: len(manager.large_windows()) == 2, "another window")
    manager.shows(folder / "zzz.txt")


@pytest.mark.skipif(MANAGER not in {Caja, Nemo}, reason="no icons of it look alike")
@pytest.mark.usefixtures("view")
def test_it_is_told_from_another_one_that_looks_alike(desktop, folder, open_manager):
    *others, new = [folder / pathlib.Path(os.fsdecode(name)) for name in (b"\xfe.txt", b"\xff.txt")]
    others[0].touch()
    open_manager(folder)
    wait_for(lambda: desktop.selects(folder / "letter.txt"), "the view")
    new.touch()
    assert desktop.selects(new)


@pytest.mark.skipif(MANAGER is not Caja, reason="opens no folder in a list while it is empty")
def test_it_is_selected_in_a_folder_that_is_open_in_the_list_and_empty(desktop, folder, open_manager):
    manager = open_manager(folder)
    desktop.click(manager.on("inner"))
    desktop.press("plus")
    wait_for(lambda: [row for row in manager.rows() if "empty" in row.name.lower()], "the folder to be open")
    made = folder / "inner/zzz.txt"
    made.touch()
    assert desktop.selects(made)
    manager.shows(made)
