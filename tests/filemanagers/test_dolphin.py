# SPDX-License-Identifier: GPL-3.0-or-later
"""What only Dolphin has."""

import signal

import pytest
from sprigtest.screenreader import has, wait_to_see
from sprigtest.waiting import wait_for


def test_a_menu_that_comes_late_goes_into_the_open_one(desktop, folder, manager):
    desktop.start_extension()
    desktop.signal_extension(signal.SIGSTOP)
    manager.time_to_menu(manager.on("inner"))
    assert "Sprig" not in manager.listed()
    desktop.signal_extension(signal.SIGCONT)
    manager.pick("Sprig", "Plain Text")
    manager.shows(folder / "inner/Plain Text.txt")


def test_a_creation_is_the_next_thing_that_dolphin_undoes(desktop, folder, manager):
    manager.open_menu(manager.background())
    manager.pick("Sprig", "Plain Text")
    made = folder / "Plain Text.txt"
    manager.shows(made)
    desktop.press("ctrl+z")
    desktop.dialog("Delete Permanently — Dolphin")
    desktop.press("Return")
    wait_for(lambda: not made.exists(), "the file to go")
    assert (folder / "letter.txt").exists()


def select(manager, file, window=None):
    """What the module answers when it is asked to select a file."""
    return manager.desktop.selects(file, window or f"x11:{int(manager.window):x}", manager.bus_name)


@pytest.mark.parametrize("view", ["ctrl+1", "ctrl+2", "ctrl+3"], ids=["icons", "compact", "details"])
def test_a_new_file_is_selected_in_sight_with_the_focus(desktop, folder, open_manager, view):
    for number in range(500):
        (folder / f"file {number:03}.txt").touch()
    manager = open_manager(folder)
    manager.load_module()
    desktop.press(view, "ctrl+a")
    before = len(manager.frames()), manager.tabs()
    for name in ("file 250 new.txt", "file 200 new.txt"):
        (folder / name).touch()
        assert select(manager, folder / name)
        wait_to_see(lambda: manager.selected_rows() == {name}, f"{name} to be selected, alone")
        wait_to_see(lambda: has(manager.rows(name)[0], "FOCUSED") and manager.has_in_sight(name), f"{name} in sight")
    assert (len(manager.frames()), manager.tabs()) == before


@pytest.mark.parametrize("keys, name, window", [
    (["alt+Up"], "letter.txt", None),
    (["ctrl+t", "alt+Up"], "letter.txt", None),
    ([], "letter.txt", "x11:1"),
    ([], ".env", None),
    ([], "inner/deep.txt", None),
], ids=["folder left", "another tab", "another window", "hidden", "another folder"])
def test_no_other_view_is_touched(desktop, folder, manager, keys, name, window):
    (folder / name).touch()
    manager.load_module()
    desktop.click(manager.on("inner"))
    wait_to_see(lambda: manager.selected_rows() == {"inner"}, "a selection")
    for key in keys:
        desktop.press(key)
    if keys:
        desktop.is_called(manager.window, lambda title: not title.startswith("demo"))
    before = manager.selected_rows(), manager.tabs()
    assert not select(manager, folder / name, window)
    assert (manager.selected_rows(), manager.tabs()) == before
