# SPDX-License-Identifier: GPL-3.0-or-later
"""The dialogs as their users see them: windows on a real X server with a window manager, keys, mouse, screen reader."""

import json
import os
import signal

import pytest
from conftest import ALERT, BASE, PROMPT
from sprigtest.screenreader import WITHIN_WINDOW, area, nodes, selection_in, wait_to_see
from sprigtest.waiting import DEADLINE, output_of, wait_for
from sprigtest.wayland import compositor

NAME = "Meeting Notes 2026-11-16.md"
LONG = "\n".join(f"Line {number} of many that nobody reads to the end of" for number in range(400))


def prompt(text, selected):
    """A prompt for a name of which the first `selected` UTF-16 code units are to be replaced."""
    return ({**PROMPT, "field": {"text": text, "width": 300}},
            {"command": "change", "selection": {"location": 0, "length": selected}})


def field_of(dialog):
    return next(nodes(dialog.accessible(), {"text"}))


@pytest.mark.parametrize("act, event", [
    (lambda it: it.press("Return"), {"event": "field", "text": NAME}),
    (lambda it: it.type("Minutes").press("Return"), {"event": "field", "text": "Minutes.md"}),
    (lambda it: it.press("ctrl+a").type("a/b").press("KP_Enter"), {"event": "field", "text": "a/b"}),
    (lambda it: it.press("ctrl+a", "BackSpace", "Return"), {"event": "field", "text": ""}),
    (lambda it: it.press("Escape"), {"event": "button", "button": 1, "text": NAME}),
    (lambda it: it.type("x").press("Tab", "space"), {"event": "button", "button": 1, "text": "x.md"}),
    (lambda it: it.press("Tab", "Tab", "Return"), {"event": "button", "button": 0, "text": NAME}),
    (lambda it: it.click("Create"), {"event": "button", "button": 0, "text": NAME}),
    (lambda it: it.click("Cancel"), {"event": "button", "button": 1, "text": NAME}),
    (lambda it: it.press("alt+F4"), {"event": "close", "text": NAME}),
])
def test_a_prompt_reports_what_the_user_does_and_stays_until_told(open_dialog, act, event):
    dialog = open_dialog(PROMPT, BASE).shown()
    act(dialog)
    assert dialog.event() == event
    assert dialog.window
    dialog.tell({"command": "close"})
    assert dialog.ends() == (0, "")


@pytest.mark.parametrize("text, selected, result", [
    ("archive.tar.gz", 11, "x.gz"),
    ("é" * 126 + ".md", 126, "x.md"),
    ("a" * 251 + ".txt", 251, "x.txt"),
    ("פתק פגישה.md", 9, "x.md"),
    ("😀é.md", 3, "x.md"),
    ("_R&D <b>.md", 8, "x.md"),
])
def test_typing_replaces_the_selected_part_of_any_name(open_dialog, text, selected, result):
    dialog = open_dialog(*prompt(text, selected)).shown()
    assert dialog.type("x").press("Return").event() == {"event": "field", "text": result}


def test_a_screen_reader_finds_names_and_roles(open_dialog):
    dialog = open_dialog(PROMPT, BASE).shown()
    window = dialog.accessible()
    found = {(node.role, node.name) for node in nodes(window)}
    assert (window.role, window.name) == ("dialog", PROMPT["title"])
    assert found >= {("image", "Meeting Notes"), ("label", PROMPT["title"]), ("label", PROMPT["text"]),
                     ("text", PROMPT["text"]), ("push button", "Create"), ("push button", "Cancel")}
    described = [target.name for target in window.related()]
    assert described == [PROMPT["text"]]
    field = field_of(dialog)
    assert [target.name for target in field.related()] == [PROMPT["text"]]
    # Its own extents are without its border.
    assert area(field.parent, WITHIN_WINDOW).width == 300
    wait_for(lambda: selection_in(field_of(dialog)) == (0, 24), "the selected base")


@pytest.mark.parametrize("icon", [ALERT["icon"], {"names": ["nosuchsymbol"], "size": 36, "description": "Nothing"}])
def test_a_screen_reader_finds_no_icon_that_says_nothing_or_that_no_theme_has(open_dialog, icon):
    window = open_dialog({**ALERT, "icon": icon}).shown().accessible()
    assert "image" not in {node.role for node in nodes(window)}


def test_a_note_tells_what_is_wrong_with_a_name_and_the_name_is_taken_all_the_same(open_dialog):
    dialog = open_dialog(PROMPT).shown()

    def notes():
        return [node.name for node in nodes(dialog.accessible(), {"alert"})]
    for name, note in [(" ..\u3000", "can’t be called “..”"), ("é" * 127 + "a", None), (".", "called “.”"), ("", None),
                       ("é" * 128, "may be too long: it has 256 bytes"), ("a.b", None), ("..a", "are hidden"),
                       ("a/b", "can’t contain “/”")]:
        dialog.tell({"command": "change", "text": name})
        wait_to_see(lambda: note in notes()[0] if note else not notes(), f"the note on “{name}”")
    field = field_of(dialog)
    described = [target.name for target in field.related()]
    assert described == [PROMPT["text"], "File names can’t contain “/”."]
    assert dialog.press("Return").event() == {"event": "field", "text": "a/b"}


def test_the_text_of_an_alert_is_copied_by_keyboard(open_dialog):
    dialog = open_dialog({**ALERT, "text": "Read-only & <full>\nשלום"}).shown()
    dialog.press("shift+Tab", "ctrl+a", "ctrl+c")
    assert wait_for(lambda: output_of("xclip", "-o", "-selection", "clipboard"), "the copy") == "Read-only & <full>\nשלום"


@pytest.mark.parametrize("text", [LONG, "x" * 2000, LONG.replace("\n", " ")], ids=["lines", "one word", "one line"])
def test_a_huge_text_stays_within_the_screen_and_scrolls(open_dialog, text):
    dialog = open_dialog({**ALERT, "text": text}).shown()
    _, _, width, height = dialog.geometry()
    assert width < 700 and height < 450
    bars = nodes(dialog.accessible(), {"scroll bar"})
    assert max(node.get("MaximumValue", "Value") for bar in bars for node in nodes(bar) if node.can("Value")) > 500


def test_a_dialog_opens_in_front_of_the_window_it_belongs_to_and_has_the_keyboard(open_dialog):
    parent = open_dialog({**ALERT, "title": "File manager"}).shown()
    child = open_dialog({**PROMPT, "parentWindow": f"x11:{int(parent.window):x}", "activationToken": "tok_TIME1"}).shown()
    assert child.property("WM_TRANSIENT_FOR").split("# ")[1] == hex(int(parent.window))
    middles = [(x + width / 2, y + height / 2) for x, y, width, height in (parent.geometry(), child.geometry())]
    assert middles[0] == pytest.approx(middles[1], abs=30)
    assert "_NET_WM_STATE_ABOVE" in child.property("_NET_WM_STATE")
    assert "_NET_WM_STATE_ABOVE" not in parent.property("_NET_WM_STATE")
    output_of("wmctrl", "-i", "-a", parent.window)
    child.tell({"command": "change", "front": True})
    child.shown()
    assert child.type("x").press("Return").event()["event"] == "field"


def test_a_late_dialog_has_the_focus_and_keeps_it_from_others_at_first(open_dialog):
    other = open_dialog(ALERT).shown()
    late = open_dialog({**PROMPT, "late": True, "activationToken": "tok_TIME1"}).shown()
    late.process.send_signal(signal.SIGSTOP)
    output_of("wmctrl", "-i", "-a", other.window)
    wait_for(other.is_active, "the other's focus")
    late.process.send_signal(signal.SIGCONT)
    assert wait_for(late.is_active, "the focus") and late.type("x").press("Return").event()["event"] == "field"


@pytest.mark.parametrize("parent", ["", "x11:", "x11:0", "x11:12zz", "x11:" + "f" * 40, "x11:7fffffff", "wayland:abc", "?"])
def test_without_a_parent_a_dialog_stands_in_the_middle_of_the_screen(open_dialog, desktop, parent):
    dialog = open_dialog({**PROMPT, "parentWindow": parent, "centered": True, "accessory": True}).shown()
    wait_for(lambda: [abs(2 * start + length - whole) < 4 for start, length, whole in zip(
        dialog.geometry()[:2], dialog.geometry()[2:], desktop.screenshot().size)] == [True, True], "its place")
    for name, values in [("_NET_WM_WINDOW_TYPE", ["_DIALOG"]), ("_NET_WM_STATE", ["_SKIP_TASKBAR", "_SKIP_PAGER"]),
                         ("WM_CLASS", ['"com.kestrel.Sprig"'])]:
        assert all(value in dialog.property(name) for value in values)
    assert dialog.press("Escape").event()["event"] == "button"


def test_windows_are_dark_when_the_desktop_prefers_that(open_dialog, desktop, tmp_path):
    desktop.home.write("dark/glib-2.0/settings/keyfile", "[org/gnome/desktop/interface]\ncolor-scheme='prefer-dark'\n")
    light = open_dialog(ALERT).shown().picture(tmp_path / "light.png").resize((1, 1)).getpixel((0, 0))
    dark = open_dialog(ALERT, XDG_CONFIG_HOME=f"{desktop.home.path}/dark").shown()
    wait_for(lambda: sum(dark.picture(tmp_path / "dark.png").resize((1, 1)).getpixel((0, 0))) < sum(light) / 2, "dark")


@pytest.mark.parametrize("lines, complaint", [
    (b'{"command": "change"}\n', "nothing is shown yet"),
    (json.dumps(ALERT).encode() * 2 + b"\n", "not JSON"),
    ((json.dumps(ALERT).encode() + b"\n") * 2, "a second window"),
    (b"x" * (2 << 20), "too long"),
], ids=["too early", "no JSON", "second window", "endless"])
def test_what_is_no_command_ends_the_dialog_with_a_complaint(open_dialog, lines, complaint):
    dialog = open_dialog()
    try:
        dialog.write(lines)
    except BrokenPipeError:
        pass
    dialog.process.stdin.close()
    dialog.process.stdin = None
    status, errors = dialog.ends()
    assert status == 1 and complaint in errors and errors.count("\n") == 1


def test_the_end_of_its_input_ends_the_dialog(open_dialog):
    for dialog in (open_dialog(), open_dialog(PROMPT).shown()):
        assert dialog.ends() == (0, "")


def test_without_a_display_the_dialog_ends_with_a_complaint(open_dialog):
    for display in (None, ":987"):
        assert open_dialog(PROMPT, DISPLAY=display).ends() == (1, "sprig-dialog: there is no display\n")


def test_the_dialog_ends_with_its_display(open_dialog, desktop):
    display = desktop.announcing("Xvfb", "-displayfd", "{}", "-nolisten", "tcp")
    server = desktop.processes.pop()
    dialog = open_dialog(PROMPT, DISPLAY=f":{display}")
    assert dialog.event() == {"event": "shown"}
    server.terminate()
    server.wait(DEADLINE)
    assert dialog.process.wait(DEADLINE) != 0


def test_a_dialog_whose_extension_has_gone_ends_when_it_has_something_to_report(open_dialog):
    dialog = open_dialog(PROMPT).shown()
    dialog.process.stdout.close()
    dialog.press("Escape")
    assert dialog.process.wait(DEADLINE) == 0


def test_an_icon_that_is_installed_with_sprig_comes_before_a_stand_in_that_the_theme_has(open_dialog, tmp_path):
    icon = tmp_path / "icons/hicolor/symbolic/apps/sprig-square-symbolic.svg"
    icon.parent.mkdir(parents=True)
    icon.write_text('<svg xmlns="http://www.w3.org/2000/svg" width="16" height="16"><path d="M0 0h16v16H0z"/></svg>')
    names = {"names": [icon.stem, "text-x-generic-symbolic"], "size": 36, "description": ""}
    dialog = open_dialog({**ALERT, "icon": names}, XDG_DATA_DIRS=f"{tmp_path}:/usr/share").shown()
    # The middle of the theme's sheet of paper is empty.
    wait_for(lambda: sum(dialog.picture(tmp_path / "dialog.png").getpixel((39, 39))) < 300, "the square")


def test_under_wayland_the_token_of_the_click_gives_the_window_the_focus(open_dialog):
    with compositor() as environment:
        dialog = open_dialog({**ALERT, "activationToken": "the-clicks", "parentWindow": "wayland:the-managers"}, **environment)
        os.set_blocking(dialog.process.stderr.fileno(), False)
        said = []

        def has_asked():
            said.append(dialog.process.stderr.read() or b"")
            return all(request in b"".join(said) for request in (
                b'.activate("the-clicks", ', b', "the-managers")', b".set_parent_of(", b'.set_app_id("com.kestrel.Sprig")'))
        wait_for(has_asked, "the requests")
