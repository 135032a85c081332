"""Sprig in a real file manager: open a folder, open the menu, pick, find the file."""

import time

from driving import CONTINUE, KILL, STOP, template, wait_for

LISTED = ["R&D_notes", "Plain Text", "More Templates", "Sprig Settings…"]


def test_a_template_is_picked_on_the_background_with_the_mouse(desktop, folder, manager):
    manager.open_menu(manager.background())
    manager.pick("Sprig")
    assert [name for name in manager.submenu("Sprig") if name] == LISTED
    manager.pick("R&D_notes")
    made = folder / "R&D_notes.txt"
    wait_for(made.exists, "the file")
    assert made.read_text() == "made of R&D_notes\n"
    if manager.profile.selects_new_files:
        wait_for(lambda: made.name in manager.selected_rows(), "the file to be selected")
    else:
        wait_for(lambda: len(manager.showing({"table cell"}, made.name)) == 2, "the file in a window of its own")


def test_a_template_is_picked_on_an_item_with_the_keyboard(desktop, folder, manager):
    desktop.click(manager.on("inner"))
    desktop.press("Menu")
    manager.pick_by_keys("Sprig", "More Templates", "More 1")
    wait_for((folder / "inner/More 1.txt").exists, "the file in the folder that was selected")


def test_a_name_is_asked_for(desktop, folder, manager):
    desktop.configure(template("Plain Text", filenamePattern="Untitled.txt"), defaultBehavior="prompt")
    wait_for(lambda: not desktop.extension_pids() or
             "Loaded config with 1 total" in desktop.extension_log.read_text(), "the new configuration")
    manager.open_menu(manager.on("letter.txt"))
    manager.pick("Sprig", "Plain Text")
    desktop.dialog("New Plain Text")
    desktop.type("Answer")
    desktop.press("Return")
    wait_for((folder / "Answer.txt").exists, "the file")


def test_a_changed_configuration_changes_the_next_menu(desktop, folder, manager):
    manager.open_menu(manager.background())
    desktop.press("Escape")
    wait_for(manager.has_no_menu, "the menu to close")
    desktop.configure(template("Brand New"), defaultBehavior="create")

    def offered():
        manager.open_menu(manager.background())
        manager.pick("Sprig")
        names = [name for name in manager.submenu("Sprig") if name]
        if names == ["Brand New", "Sprig Settings…"]:
            return True
        desktop.press("Escape", "Escape")
        return False
    wait_for(offered, "the new menu")


def test_there_is_no_menu_where_sprig_does_not_serve(desktop, open_manager):
    manager = open_manager("/usr/share/doc/base-files")
    desktop.click(manager.on("copyright"), button=3)
    wait_for(lambda: manager.open_entries(), "a menu")
    assert "Sprig" not in manager.open_entries()


def test_a_stopped_extension_does_not_stop_the_file_manager(desktop, folder, manager):
    manager.open_menu(manager.background())
    desktop.press("Escape")
    wait_for(manager.has_no_menu, "the menu to close")
    desktop.signal_extension(STOP)
    begin = time.monotonic()
    manager.open_menu(manager.background())
    assert time.monotonic() - begin < 3, "the menu is there, and nobody was asked"
    manager.pick("Sprig", "Plain Text")
    desktop.press("Down", "Up")
    manager.open_menu(manager.on("letter.txt"))
    desktop.press("Escape")
    desktop.signal_extension(CONTINUE)
    wait_for((folder / "Plain Text.txt").exists, "the file, once the extension goes on")


def test_a_killed_extension_is_started_again_by_the_next_pick(desktop, folder, manager):
    manager.open_menu(manager.background())
    manager.pick("Sprig")
    manager.submenu("Sprig")
    before = desktop.extension_pids()
    desktop.signal_extension(KILL)
    manager.pick("Plain Text")
    wait_for((folder / "Plain Text.txt").exists, "the file")
    assert desktop.extension_pids() != before
