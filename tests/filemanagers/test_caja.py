# SPDX-License-Identifier: GPL-3.0-or-later
"""What only Caja has."""

from sprigtest.screenreader import middle, nodes, wait_to_see
from sprigtest.waiting import output_of, wait_for


def test_a_template_is_picked_from_the_button_in_the_toolbar(desktop, folder, manager):
    # At its first width the window has the button behind an arrow.
    output_of("xdotool", "windowsize", "--sync", manager.window, "1080", "600")
    button = manager.settled_place(lambda: next(nodes(manager.frames()[0], {"push button"}, "Sprig")), "the button")
    desktop.click(middle(button))
    assert wait_to_see(manager.listed) == ["R&D_notes", "Plain Text", "More Templates", "Sprig Settings…"]
    desktop.picture("toolbar")
    manager.pick("More Templates", "More 1")
    manager.shows(folder / "More 1.txt")


def test_a_new_file_is_selected_in_a_folder_that_is_open_in_the_list_and_empty(desktop, folder, manager):
    desktop.click(manager.on("inner"))
    desktop.press("plus")
    wait_for(lambda: [row for row in manager.rows() if "empty" in row.name.lower()], "the folder to be open")
    made = folder / "inner/zzz.txt"
    made.touch()
    assert desktop.selects(made)
    manager.shows(made)
