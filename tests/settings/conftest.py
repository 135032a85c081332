# SPDX-License-Identifier: GPL-3.0-or-later
"""The settings program on a desktop without a screen, as its users see it."""

import json
import os
import pathlib
import subprocess
import time

import pytest
from sprigtest.desktop import Desktop, Gtk4Program, install_settings, pytest_runtest_makereport
from sprigtest.home import SOURCE, template, throw_away_home
from sprigtest.screenreader import has, middle, nodes, text_of, wait_to_see, windows
from sprigtest.waiting import DEADLINE, output_of, settled, wait_for

PROGRAMS = pathlib.Path(os.environ.get("SPRIG_PROGRAMS", SOURCE / "build/bin")).resolve()
BUTTONS = {"push button", "check box", "page tab", "menu item"}


class Settings(Gtk4Program):
    """A run of the program."""

    def __init__(self, desktop, *arguments, wrapper=()):
        super().__init__(desktop, subprocess.Popen(
            [*wrapper, PROGRAMS / "sprig-settings", *arguments], stderr=desktop.log,
            # A sanitizer refuses it.
            env={**desktop.environment, "NSS_WRAPPER_DISABLE_DEEPBIND": "1"}))
        wait_for(self.is_active, "the focus")

    def started_again(self, *arguments):
        """As a second run, which hands over to this one."""
        subprocess.run([PROGRAMS / "sprig-settings", *arguments], env=self.desktop.environment, check=True, timeout=DEADLINE)
        return self

    @property
    def window(self):
        return "".join(self.desktop.windows_of(self.process, "--name", "Sprig Settings")[-1:])

    def seen(self, roles=None, name=None):
        """What is on the screen of these roles and this name."""
        return [node for node in nodes(self.accessible(), roles, name) if has(node, "VISIBLE")]

    def sees(self, roles, name=None):
        return wait_to_see(lambda: self.seen(roles, name), f"{roles} {name or ''}")[0]

    def reads(self, text):
        """Waits for a text that a label shows."""
        wait_to_see(lambda: [label for label in self.seen({"label", "alert"}) if text in label.name], f"“{text}”")

    def click(self, name, roles=frozenset(BUTTONS)):
        node = self.sees(roles, name)

        def look():
            place = self.place(node)
            return place.width and place.height and place
        # What has just appeared is not laid out yet.
        self.desktop.click(middle(settled(look, f"the place of {name}", not_yet=KeyError)))
        return self

    def push(self, name):
        """Clicks as a screen reader does: newer releases of GTK tell wrong places of what has margins around it."""
        assert self.sees({"push button"}, name).ask("Action", "DoAction", "(i)", 0)

    def take_file(self, file):
        """In a dialog for files. What is typed while it looks at a folder is lost, and newer releases of GTK take the
        first Return for a choice only."""
        def is_chosen():
            return any(has(cell, "SELECTED") for window in windows(self.process.pid)[1:]
                       for cell in nodes(window, {"table cell"}, file.name))

        entered = 0

        def has_ended():
            nonlocal entered
            if len(windows(self.process.pid)) > 1 and time.monotonic() - entered > 1:
                if not is_chosen():
                    self.press("ctrl+a")
                    self.desktop.type(str(file))
                self.press("Return")
                entered = time.monotonic()
            return len(windows(self.process.pid)) == 1
        wait_to_see(has_ended, "the end of the dialog")

    def rows(self):
        return [row.name for row in self.seen({"list item"})]

    def lists(self, *names):
        wait_to_see(lambda: self.rows() == list(names), f"the list {names}")

    def focuses(self, name):
        """Waits until a row has the keyboard."""
        wait_to_see(lambda: [row for row in self.seen({"list item"}, name) if has(row, "FOCUSED")], f"the focus on {name}")

    def fill(self, name, text):
        """Replaces what stands in a field; the tests' keyboard has no {."""
        field = self.sees({"text", "entry"}, name)
        field.call("org.a11y.atspi.EditableText", "SetTextContents", "(s)", text)

    def text(self, name):
        return text_of(self.sees({"text", "entry"}, name))

    def choose(self, place):
        """The entry at that place of the menu that opens."""
        wait_for(lambda: len(self.desktop.windows_of(self.process)) > 1, "the menu")
        return self.press(*["Down"] * place, "Return")

    def insert(self, which, place):
        """Chooses from one of the menus of placeholders."""
        button = self.seen({"push button"}, "Insert")[which]
        self.desktop.click(middle(self.place(button)))
        self.choose(place)

    def scroll_to_top(self):
        self.desktop.point(middle(self.desktop.area(self.window)))
        output_of("xdotool", "click", "--repeat", "200", "--delay", "2", "4")
        return self

    def middle_of_row(self, name):
        return middle(self.place(self.sees({"list item"}, name)))

    def drag(self, name, target, until=lambda: True):
        """From the middle of a row to the lower part of another, and drops it there once it is time."""
        (x, y), (_, end) = map(self.middle_of_row, (name, target))
        output_of("xdotool", "mousemove", str(x), str(y), "mousedown", "1")
        # What is dragged is a window, too.
        wait_for(lambda: len(self.desktop.windows_of(self.process)) > 1, "the drag",
                 between=lambda: output_of("xdotool", "mousemove_relative", "--sync", "0", "5"))
        self.desktop.point((x, end + 8))
        wait_to_see(until, "the time to drop")
        settled(lambda: self.desktop.screenshot().tobytes(), "the screen", between=lambda: time.sleep(0.1))
        output_of("xdotool", "mouseup", "1")

    def picture(self, name):
        left, top, width, height = self.desktop.area(self.window)
        self.desktop.picture(f"settings-{name}", lambda image: image.crop((left, top, left + width, top + height)))


class ConfiguredDesktop(Desktop):
    """A desktop on which the settings are installed, and what is in the configuration."""

    def config(self):
        return json.loads(self.home.config.read_text())

    def templates(self, *fields):
        return [tuple(item[field] for field in fields) if len(fields) > 1 else item[fields[0]]
                for item in self.config()["templates"]]

    def change(self, edit):
        """As another program does it."""
        config = self.config()
        edit(config)
        self.home.write(self.home.config, json.dumps(config))


@pytest.fixture(scope="session")
def session():
    with throw_away_home() as home:
        install_settings(home, PROGRAMS / "sprig-settings")
        home.write(".config/user-dirs.dirs", 'XDG_DOCUMENTS_DIR="$HOME/Projects"\nXDG_TEMPLATES_DIR="$HOME/Templates"\n')
        (home.path / "Projects").mkdir()
        result = ConfiguredDesktop(home)
        result.start()
        yield result
        result.stop()


@pytest.fixture
def desktop(session):
    """With the templates Alpha, Beta and Gamma, of which the menu itself has two."""
    session.home.configure(*map(template, ("Alpha", "Beta", "Gamma")), maxVisibleTemplates=2)
    said = session.output.stat().st_size
    yield session
    assert session.complaints("CRITICAL|WARNING|Sanitizer|runtime error", said) == []


@pytest.fixture
def open_settings(desktop):
    """Starts the program."""
    runs = []

    def start(*arguments, **options):
        runs.append(Settings(desktop, *arguments, **options))
        return runs[-1]
    yield start
    for run in runs:
        run.process.kill()
        run.process.wait(DEADLINE)


@pytest.fixture
def settings(open_settings):
    return open_settings()
