# SPDX-License-Identifier: GPL-3.0-or-later
"""What only Thunar has."""

from sprigtest.screenreader import wait_to_see


def test_a_template_is_picked_in_the_sidebar(desktop, folder, manager):
    manager.open_menu(manager.on("Marked"))
    manager.pick("Sprig", "Plain Text")
    manager.shows(folder / "inner/Plain Text.txt")
    assert desktop.home.logged("menu(for: 2) requested")


def test_typing_asks_nobody(desktop, manager):
    manager.open_menu(manager.background())
    manager.close_menus()
    desktop.end_extension()
    desktop.type("letter")
    wait_to_see(lambda: "letter.txt" in manager.selected_rows(), "the file that begins so")
    assert desktop.extension_pids() == []
