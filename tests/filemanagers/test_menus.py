# SPDX-License-Identifier: GPL-3.0-or-later
"""Sprig in a real file manager: open a folder, open the menu, pick, find the file."""

import os

import pytest
from sprigtest.home import BUILTINS, template
from sprigtest.screenreader import has, nodes, wait_to_see
from sprigtest.waiting import output_of, wait_for

SETTINGS = "Sprig Settings…"


def test_a_newcomer_makes_meeting_notes_with_the_mouse(desktop, folder, open_manager):
    manager = open_manager(folder)
    manager.open_menu(manager.background())
    manager.pick("Sprig")
    listed = manager.submenu("Sprig")
    assert listed[:11] == [*BUILTINS, "More Templates"] and listed[-1] == SETTINGS
    manager.point("Meeting Notes")
    desktop.picture("menu")
    manager.pick("Meeting Notes")
    desktop.prompt("New Meeting Notes")
    desktop.picture("prompt")
    desktop.type("Kick-off")
    desktop.press("Return")
    made = folder / "Kick-off.md"
    manager.shows(made)
    assert made.read_text().startswith("# Meeting Notes — 20")


@pytest.mark.parametrize("locale, more, notes, title", [
    ("de_DE", "Weitere Vorlagen", "Besprechungsnotizen", "Neu: Besprechungsnotizen"),
    ("ar_EG", "قوالب أخرى", "ملاحظات اجتماع", "جديد: ملاحظات اجتماع")])
def test_menu_and_prompt_speak_the_language_of_the_user_and_files_do_not(desktop, folder, open_manager, locale, more, notes, title):
    with desktop.speaking(locale):
        manager = open_manager(folder)
        manager.open_menu(manager.background())
        manager.pick("Sprig")
        assert manager.submenu("Sprig")[10] == more
        manager.point(notes)
        desktop.picture(f"menu-{locale}")
        manager.pick(notes)
        desktop.prompt(title)
        desktop.picture(f"prompt-{locale}")
        desktop.press("Return")
        manager.shows(wait_for(lambda: next(folder.glob("Meeting Notes 20*.md"), None), "the file"))


def test_a_template_is_picked_on_an_item_with_the_keyboard(desktop, folder, manager):
    desktop.click(manager.on("inner"))
    wait_to_see(lambda: "inner" in manager.selected_rows(), "the folder to be selected")
    desktop.press("Menu")
    manager.enter_by_keys("Sprig", "More Templates")
    assert manager.submenu("More Templates") == ["More 1"]
    manager.pick_by_keys("More 1")
    made = folder / "inner/More 1.txt"
    manager.shows(made)
    assert made.read_text() == "More 1 in inner\n"


def test_a_file_picked_for_an_item_lands_beside_it_though_the_extension_has_gone_meanwhile(desktop, folder, manager):
    manager.open_menu(manager.on("letter.txt"))
    manager.pick("Sprig")
    assert manager.submenu("Sprig") == ["R&D_notes", "Plain Text", "More Templates", SETTINGS]
    desktop.end_extension()
    manager.pick("R&D_notes")
    manager.shows(folder / "R&D_notes.txt")


def test_a_file_is_shown_in_another_window_when_the_folder_was_left_meanwhile(desktop, folder, manager):
    desktop.configure(template("zzz"), defaultBehavior="prompt")
    manager.comes_to_list(manager.background(), "zzz")
    manager.pick("zzz")
    desktop.prompt("New zzz")
    prompt = desktop.active_window()
    manager.leave_folder()
    desktop.activate(prompt)
    desktop.press("Return")
    wait_for(lambda: len(manager.large_windows()) == 2, "another window")
    manager.shows(folder / "zzz.txt")


def test_a_folder_without_permission_is_explained(desktop, folder, manager):
    folder.chmod(0o555)
    manager.open_menu(manager.background())
    manager.pick("Sprig", "Plain Text")
    desktop.dialog("Permission Denied")
    desktop.picture("alert")
    desktop.press("Return")
    wait_for(desktop.has_no_dialog, "the alert to go")
    assert sorted(os.listdir(folder)) == ["inner", "letter.txt"]


@pytest.mark.parametrize("item", ["letter.txt", None], ids=["item", "background"])
def test_a_changed_configuration_changes_the_next_menu(desktop, manager, item):
    place = manager.on(item) if item else manager.background()
    manager.open_menu(place)
    manager.close_menus()
    desktop.configure(template("Brand New"), template("Deep"), maxVisibleTemplates=1, showCategories=False)
    manager.comes_to_list(place, "Brand New", "More Templates")
    if item:
        manager.pick("More Templates")
        assert manager.submenu("More Templates") == ["Deep"]
        desktop.picture("more-templates")


def test_a_menu_without_templates_says_so_where_rows_can_be_disabled(desktop, manager):
    place = manager.background()
    manager.open_menu(place)
    manager.close_menus()
    desktop.configure(template("Hidden", enabled=False))
    disabled = ["No Templates Configured"] if manager.disables_rows() else []
    manager.comes_to_list(place, *disabled, SETTINGS)
    assert [name for name in disabled if has(manager.entry(name), "SENSITIVE")] == []


def test_a_menu_is_for_the_folder_of_its_window(desktop, folder, manager):
    place = manager.background()
    process = desktop.launch(*(word.format(folder / "inner") for word in manager.command))
    other = wait_for(lambda: [window for window in manager.large_windows() if window != manager.window], "the other window")
    desktop.activate(other[0])
    desktop.activate(manager.window)
    manager.open_menu(place)
    manager.pick("Sprig", "R&D_notes")
    manager.shows(folder / "R&D_notes.txt")
    desktop.end(process)


def test_the_settings_open_in_front_and_put_the_next_menu_in_order(desktop, manager):
    place = manager.background()
    manager.open_menu(place)
    manager.pick("Sprig", SETTINGS)
    window = desktop.dialog("Sprig Settings")

    def rows(*states):
        return [row.name for row in nodes(window, {"list item"}) if has(row, *states)]
    assert rows() == ["R&D_notes", "Plain Text", "More 1", "Hidden"]
    wait_to_see(lambda: rows("FOCUSED") == ["R&D_notes"], "the focus")
    desktop.press("alt+Down")
    wait_to_see(lambda: rows()[:2] == ["Plain Text", "R&D_notes"], "the new order")
    desktop.press("alt+F4")
    wait_for(lambda: not output_of("pgrep", "-f", "sprig-settings"), "the settings to end")
    manager.comes_to_list(place, "Plain Text", "R&D_notes")
