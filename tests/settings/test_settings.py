# SPDX-License-Identifier: GPL-3.0-or-later
"""Stories of the settings: keys, mouse, a screen reader, and the file that others change, too."""

import datetime
import json
import os

import pytest
from sprigtest.home import template
from sprigtest.screenreader import has, wait_to_see
from sprigtest.waiting import DEADLINE, output_of, settled, wait_for

TODAY = datetime.datetime.now(datetime.timezone.utc).strftime("%Y-%m-%d")


def test_the_list_is_put_in_order_by_keys(desktop, settings):
    settings.lists("Alpha", "Beta", "Gamma")
    settings.focuses("Alpha")
    assert [row.get("Description") for row in settings.seen({"list item"})] == [
        "1 of 3, .txt", "2 of 3, .txt", "3 of 3, .txt, under “More Templates”"]
    settings.reads("Under “More Templates”")
    settings.press("alt+Down")
    settings.lists("Beta", "Alpha", "Gamma")
    settings.focuses("Alpha")
    settings.press("alt+End").lists("Beta", "Gamma", "Alpha")
    settings.focuses("Alpha")
    assert desktop.templates("name") == ["Beta", "Gamma", "Alpha"]
    settings.press("ctrl+z", "ctrl+z")
    settings.lists("Alpha", "Beta", "Gamma")
    assert desktop.templates("name") == ["Alpha", "Beta", "Gamma"]


def test_a_long_list_has_widgets_for_what_is_in_sight(desktop, open_settings):
    count = 300
    desktop.home.configure(*(template(f"T{number:03}") for number in range(count)), maxVisibleTemplates=2)
    settings = open_settings()
    settings.focuses("T000")
    settings.press("End").focuses("T299")
    assert len(settings.rows()) < 40
    assert settings.sees({"list item"}, "T299").get("Description") == "300 of 300, .txt, under “More Templates”"
    settings.press("Up", "alt+Down", "Page_Up").focuses("T289")
    wait_for(lambda: desktop.templates("name")[-2:] == ["T299", "T298"], "the file")
    settings.scroll_to_top().sees({"list item"}, "T000")
    settings.press("Down").focuses("T290")
    settings.press("Home").focuses("T000")
    settings.press("ctrl+f")
    desktop.type("5")
    settings.sees({"list item"}, "T055")
    settings.press("Return").focuses("T005")
    settings.press("alt+Down")
    wait_to_see(lambda: settings.rows()[:3] == ["T015", "T005", "T025"], "what was found in its new order")
    settings.focuses("T005")
    wait_for(lambda: desktop.templates("name")[14:16] == ["T015", "T005"], "the file")


def test_a_template_is_dragged_to_another_place(desktop, settings):
    settings.lists("Alpha", "Beta", "Gamma")
    settings.drag("Alpha", "Gamma")
    settings.lists("Beta", "Gamma", "Alpha")
    wait_for(lambda: desktop.templates("name") == ["Beta", "Gamma", "Alpha"], "the file")


def test_a_template_held_at_the_edge_scrolls_the_list(desktop, open_settings):
    desktop.home.configure(*(template(f"T{number:02}") for number in range(40)))
    settings = open_settings()
    settings.focuses("T00")
    _, top, _, height = desktop.area(settings.window)
    in_sight = [row for row in settings.rows() if settings.middle_of_row(row)[1] + 20 < top + height]
    settings.drag("T01", in_sight[-1], until=lambda: settings.seen({"list item"}, "T39"))
    wait_for(lambda: desktop.templates("name")[-1] == "T01", "the file")


def test_a_file_becomes_a_template(desktop, open_settings):
    (desktop.home.demo / "Letter.odt").write_bytes(b"\xff")
    settings = open_settings()
    settings.lists("Alpha", "Beta", "Gamma")
    settings.press("ctrl+o")
    wait_for(lambda: output_of("xdotool", "getactivewindow", "getwindowname") == "New from File", "the file dialog")
    settings.take_file(desktop.home.demo / "Letter.odt")
    settings.lists("Letter", "Alpha", "Beta", "Gamma")
    settings.focuses("Letter")
    assert desktop.config()["templates"][0]["contentBase64"] == "/w=="
    settings.press("ctrl+z").lists("Alpha", "Beta", "Gamma")


def test_a_template_is_taken_out_of_the_menu_and_removed_and_comes_back(desktop, settings):
    settings.click("Show “Alpha” in the menu")
    wait_for(lambda: desktop.templates("name", "enabled")[0] == ("Alpha", False), "the switch's effect")
    settings.press("Down").focuses("Beta")
    settings.press("Delete").lists("Alpha", "Gamma")
    settings.focuses("Gamma")
    assert desktop.templates("name") == ["Alpha", "Gamma"]
    settings.reads("Removed “Beta”")
    settings.click("Undo").lists("Alpha", "Beta", "Gamma")
    assert desktop.templates("name") == ["Alpha", "Beta", "Gamma"]
    settings.focuses("Beta")
    settings.press("shift+F10").choose(1).lists("Alpha", "Beta", "Beta Copy", "Gamma")
    settings.press("ctrl+f")
    desktop.type("gam")
    settings.lists("Gamma")
    desktop.type("x")
    settings.reads("Nothing Found")


def test_a_newcomer_makes_a_template_with_a_placeholder(desktop, open_settings):
    desktop.home.config.unlink()
    (desktop.home.path / f"Projects/Log {TODAY}.md").touch()
    settings = open_settings()
    settings.reads("These templates come with Sprig.")
    settings.picture("list")
    assert not desktop.home.config.exists()
    settings.press("ctrl+n").sees({"text"}, "Name in the menu")
    desktop.type("Log")
    wait_to_see(lambda: settings.text("File name") == "Log", "the file's name to follow")
    settings.press("Tab", "End")
    desktop.type(" ")
    settings.insert(0, 0)
    settings.fill("Extension", ".md")
    settings.click("Symbol: doc text").sees({"table cell"}, "star")
    settings.press("End", "Return").sees({"push button"}, "Symbol: star")
    settings.reads(f"The next file: “Log {TODAY} 2.md”")
    settings.click("Content", {"text"})
    desktop.type("It is ")
    settings.insert(1, 5)
    wait_to_see(lambda: settings.text("Content") == "It is {{year}}", "the placeholder")
    settings.picture("editor")
    settings.click("Preview", {"page tab"})
    assert settings.text("Preview") == f"It is {TODAY[:4]}"
    settings.click("Back")
    settings.focuses("Log")
    made = desktop.config()["templates"][0]
    assert (made["name"], made["filenamePattern"], made["extension"], made["content"], made["icon"]) == (
        "Log", "Log {{date}}", ".md", "It is {{year}}", "star")
    assert len(desktop.templates("name")) == 12


def test_what_others_write_meanwhile_is_taken_in_or_asked_about(desktop, open_settings):
    settings = open_settings("sprig://settings/templates/beta")
    wait_to_see(lambda: settings.text("Name in the menu") == "Beta", "the editor")
    settings.fill("Content", "mine")
    wait_for(lambda: desktop.templates("content")[1] == "mine", "what was typed")
    desktop.change(lambda config: config["templates"][1].update(filenamePattern="theirs", custom="kept"))
    wait_to_see(lambda: settings.text("File name") == "theirs", "what others wrote")
    assert not settings.seen({"push button"}, "Keep Mine")
    desktop.change(lambda config: config["templates"][1].update(content="their text"))
    settings.reads("This template was changed elsewhere, too.")
    for keys in ("Escape", "alt+F4"):
        settings.press(keys).reads("Choose “Reload” or “Keep Mine” first.")
        settings.click("Close", {"push button"})
    settings.click("Keep Mine")
    wait_for(lambda: desktop.templates("content")[1] == "mine", "mine")
    desktop.change(lambda config: config["templates"][1].update(content="their text"))
    settings.click("Reload")
    assert settings.text("Content") == "their text"
    assert desktop.config()["templates"][1]["custom"] == "kept"
    desktop.change(lambda config: config["templates"].pop(1))
    settings.reads("This template was removed elsewhere.")


def test_null_characters_stay_though_widgets_have_none(desktop, open_settings):
    desktop.home.configure(template("Odd", content="a\0b"))
    settings = open_settings("sprig://settings/templates/odd")
    wait_to_see(lambda: settings.text("Content") == "a␀b", "the content")
    for field, text, wanted in (("Name in the menu", "Even", ["Even", "a\0b"]), ("Content", "c␀d", ["Even", "c\0d"])):
        settings.fill(field, text)
        wait_for(lambda: [*desktop.templates("name", "content")[0]] == wanted, field)


def test_bytes_are_shown_as_what_they_are(desktop, open_settings):
    desktop.home.configure(template("Picture", filenamePattern="Picture.png", contentBase64="iVBORw0KGgo="))
    settings = open_settings("sprig://settings/templates/picture")
    settings.reads("PNG image, 8 bytes")
    settings.push("Use a Text")
    wait_for(lambda: "contentBase64" not in desktop.config()["templates"][0], "the text")


def test_the_templates_folder_is_looked_at_before_it_is_imported(desktop, open_settings):
    desktop.home.write("Templates/Letters/Invoice.odt", "PK")
    desktop.home.write("Templates/Report.md", "# Report")
    (desktop.home.path / "Templates/dead.txt").symlink_to("/none")
    settings = open_settings()
    settings.lists("Alpha", "Beta", "Gamma")
    settings.click("Menu").choose(1)
    wait_for(lambda: output_of("xdotool", "getactivewindow", "getwindowname") == "Import Templates Folder", "the dialog")
    settings.press("Return").reads("2 templates to add")
    settings.click("All").click("All").reads("Invoice.odt")
    settings.picture("import")
    settings.click("1 file can’t be taken").reads("“dead.txt” is a link to nothing.")
    settings.press("Escape", "shift+Tab", "Up", "Down").reads("Report.md")
    assert settings.text("Content") == "# Report"
    assert desktop.templates("name") == ["Alpha", "Beta", "Gamma"]
    settings.click("Add 2 Templates").lists("Alpha", "Beta", "Gamma", "Invoice", "Report")
    assert desktop.templates("name", "category")[3:] == [("Invoice", "Letters"), ("Report", "writing")]
    settings.click("Undo").lists("Alpha", "Beta", "Gamma")
    assert desktop.templates("name") == ["Alpha", "Beta", "Gamma"]


def test_templates_that_somebody_shares_are_shown_before_they_are_added(desktop, open_settings):
    file = desktop.home.demo / "Letter.sprig-template"
    desktop.home.write(file, json.dumps({"version": 1, "settings": {}, "templates": [
        template("Letter", content="Dear {{name}}\0", custom="kept")]}))
    (desktop.home.demo / "Bad.sprig-template").write_text("{")
    settings = open_settings(desktop.home.demo / "Bad.sprig-template")
    settings.reads("“Bad.sprig-template” holds no templates")
    settings.started_again(file).reads("1 template to add")
    assert settings.text("Content") == "Dear {{name}}␀"
    settings.press("Escape").lists("Alpha", "Beta", "Gamma")
    settings.started_again(file).click("Add 1 Template").lists("Alpha", "Beta", "Gamma", "Letter")
    assert desktop.config()["templates"][3]["custom"] == "kept"


def test_the_whole_configuration_is_edited_as_text(desktop, open_settings):
    whole = desktop.home.config.read_text()
    settings = open_settings()
    settings.click("Menu").choose(4).reads("This text is in force.")
    assert settings.text("Configuration") == whole
    settings.fill("Configuration", "{")
    wait_to_see(lambda: not settings.seen({"label"}, "This text is in force."), "the fault")
    settings.press("Escape").click("Discard").lists("Alpha", "Beta", "Gamma")
    settings.click("Menu").choose(4)
    settings.fill("Configuration", mine := whole.replace("Alpha", "Mine"))
    desktop.home.write(desktop.home.config, whole.replace("Alpha", "Theirs"))
    settings.reads("The file was changed elsewhere, too.")
    settings.press("alt+F4").reads("What you typed is not saved.")
    settings.click("Keep Mine").click("Save").reads("This text is in force.")
    assert desktop.home.config.read_text() == mine
    settings.press("Escape").lists("Mine", "Beta", "Gamma")


def test_the_settings_of_the_menu_are_set(desktop, settings):
    settings.click("Settings", {"page tab"})
    for name in ("Show Sprig in file managers", "Sections by category", "Notifications"):
        settings.click(name)
    settings.picture("menu")
    wait_for(lambda: desktop.config()["settings"] == {
        "maxVisibleTemplates": 2, "showInFinder": False, "showCategories": False, "notificationsEnabled": False}, "the file")


def test_a_broken_file_is_mended_by_hand(desktop, open_settings):
    whole = desktop.home.config.read_text()
    settings = open_settings()
    settings.press("alt+Down").lists("Beta", "Alpha", "Gamma")
    settings.press("ctrl+z").lists("Alpha", "Beta", "Gamma")
    broken = whole.replace('"enabled": true', '"enabled": 1', 1)
    desktop.home.write(desktop.home.config, broken)
    settings.reads("templates[0].enabled: expected true or false")
    assert settings.text("Configuration") == broken
    assert not has(settings.sees({"push button"}, "Save"), "SENSITIVE")
    settings.picture("broken")
    settings.fill("Configuration", whole)
    wait_to_see(lambda: has(settings.sees({"push button"}, "Save"), "SENSITIVE"), "the text to be good")
    assert desktop.home.config.read_text() == broken
    settings.click("Save").lists("Alpha", "Beta", "Gamma")
    assert desktop.home.config.read_text() == whole
    desktop.home.write(desktop.home.config, "{")
    settings.click("Start Afresh").reads("The old text is kept in “")
    assert (desktop.home.path / ".local/state/sprig/broken-config.json").read_text() == "{"
    assert len(desktop.templates("name")) == 11
    desktop.home.write(desktop.home.config, "{")
    settings.click("Restore Backup").lists("Alpha", "Beta", "Gamma")
    assert desktop.home.config.read_text() == whole
    desktop.home.write(desktop.home.config, "{")
    settings.fill("Configuration", "{}")
    desktop.home.write(desktop.home.config, whole)
    settings.sees({"push button"}, "Keep Mine")
    assert settings.text("Configuration") == "{}"
    settings.click("Reload").press("Escape").lists("Alpha", "Beta", "Gamma")


def test_the_window_keeps_its_size(desktop, open_settings):
    settings = open_settings()
    output_of("xdotool", "windowsize", "--sync", settings.window, "800", "600")
    size = settled(lambda: desktop.area(settings.window)[2:], "the size")
    settings.press("alt+F4")
    assert settings.process.wait(DEADLINE) == 0
    settings = open_settings()
    wait_for(lambda: desktop.area(settings.window)[2:] == size, "the same size")
    (desktop.home.path / ".local/state/sprig/window.ini").unlink()


def test_a_file_that_cannot_be_written_is_shown_and_nothing_offered(desktop, open_settings):
    folder = desktop.home.config.parent
    mount = f'mount --bind "{folder}" "{folder}" && mount -o remount,bind,ro "{folder}" && exec "$@"'
    as_root = [] if os.getuid() == 0 else ["--user", "--map-root-user"]
    settings = open_settings(wrapper=["unshare", "--mount", *as_root, "sh", "-c", mount, "sh"])
    settings.reads("The configuration is read-only")
    for name in ("Show “Alpha” in the menu", "New Template"):
        assert not has(settings.sees({"check box", "push button"}, name), "SENSITIVE")
    settings.press("Return").reads("The configuration is read-only.")


@pytest.mark.parametrize("page, url, shown", [
    ("Settings", "sprig://settings", "Templates"), ("Settings", "sprig:///settings/templates/gamma", "Gamma"),
    (None, "sprig://settings/templates/none", "Templates"), (None, "sprig://other/templates/gamma", "Templates"),
    (None, None, "Templates")])
def test_a_url_shows_a_place_in_the_only_window(settings, page, url, shown):
    if page:
        settings.click(page, {"page tab"}).sees({"label"}, "New Files")
    settings.started_again(*filter(None, [url]))
    if shown == "Templates":
        settings.lists("Alpha", "Beta", "Gamma")
    else:
        wait_to_see(lambda: settings.text("Name in the menu") == shown, "the template")
    settings.press("alt+F4")
    assert settings.process.wait(DEADLINE) == 0
