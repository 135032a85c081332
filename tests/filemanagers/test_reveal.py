# SPDX-License-Identifier: GPL-3.0-or-later
"""The new file is selected in the window that was clicked in, in each kind of view of the file manager."""

import os

import pytest
from driving import MANAGERS
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
