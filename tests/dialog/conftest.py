# SPDX-License-Identifier: GPL-3.0-or-later
"""Sprig's dialogs on a desktop without a screen, as the extension and their users see them."""

import json
import os
import pathlib
import re
import select
import subprocess

import pytest
from sprigtest.desktop import Desktop, Gtk4Program, pytest_runtest_makereport
from sprigtest.home import SOURCE, throw_away_home
from sprigtest.screenreader import middle, nodes
from sprigtest.waiting import DEADLINE, output_of, wait_for

DIALOG = pathlib.Path(os.environ.get("SPRIG_DIALOG", SOURCE / "build/bin/sprig-dialog")).resolve()

PROMPT = {"command": "show", "title": "New Meeting Notes",
          "text": "Enter a name for the new file in “Projects”:",
          "icon": {"names": ["accessories-text-editor-symbolic"], "size": 36, "description": "Meeting Notes"},
          "field": {"text": "Meeting Notes 2026-11-16.md", "width": 300},
          "buttons": [{"title": "Create", "key": "return"}, {"title": "Cancel", "key": "escape"}], "floating": True}
ALERT = {"command": "show", "title": "Permission Denied",
         "text": "You don't have permission to write files in this directory.",
         "icon": {"names": ["dialog-warning"], "size": 36, "description": ""},
         "buttons": [{"title": "Close", "key": "return"}]}
BASE = {"command": "change", "selection": {"location": 0, "length": 24}}


class Dialog(Gtk4Program):
    """One run of the program, as the extension sees it (commands and events) and as its user does."""

    def __init__(self, desktop, *commands, **environment):
        merged = {**os.environ, **environment}
        super().__init__(desktop, subprocess.Popen(
            [DIALOG], stdin=subprocess.PIPE, stdout=subprocess.PIPE, stderr=subprocess.PIPE,
            env={name: value for name, value in merged.items() if value is not None}))
        self.received = b""
        self.tell(*commands)

    def tell(self, *commands):
        for command in commands:
            self.write(json.dumps(command).encode() + b"\n")

    def write(self, data):
        self.process.stdin.write(data)
        self.process.stdin.flush()

    def event(self):
        """The next event."""
        while b"\n" not in self.received:
            assert select.select([self.process.stdout], [], [], DEADLINE)[0], "waited too long for an event"
            data = os.read(self.process.stdout.fileno(), 65536)
            assert data, "the dialog ended: " + self.process.stderr.read().decode()
            self.received += data
        line, self.received = self.received.split(b"\n", 1)
        event = json.loads(line)
        # What the user does in a window lets the next one have the focus.
        assert bool(event.pop("activationToken", "")) == (event["event"] != "shown")
        return event

    def shown(self):
        """The same, once the window is there and has the keyboard."""
        assert self.event() == {"event": "shown"}
        wait_for(self.is_active, "the focus")
        return self

    @property
    def window(self):
        # GTK has a small window of its own besides the one on the screen.
        return "".join(self.desktop.windows_of(self.process)[-1:])

    def geometry(self):
        return self.desktop.area(self.window)

    def property(self, name):
        return output_of("xprop", "-id", self.window, name)

    def click(self, name):
        """Presses the button of that name with the mouse."""
        self.desktop.click(middle(self.place(next(nodes(self.accessible(), {"push button"}, name)))))

    def ends(self):
        """The exit status and what was said on standard error."""
        errors = self.process.communicate(timeout=DEADLINE)[1].decode()
        return self.process.returncode, errors

    def picture(self, file):
        """The window on the screen without its shadow, as a picture."""
        left, top, width, height = self.geometry()
        shadow = [int(number) for number in re.findall(r"\d+", self.property("_GTK_FRAME_EXTENTS").partition("=")[2])]
        inset = shadow or [0, 0, 0, 0]
        image = self.desktop.screenshot().crop(
            (left + inset[0], top + inset[2], left + width - inset[1], top + height - inset[3]))
        image.save(file, optimize=True)
        return image


@pytest.fixture(scope="session")
def desktop():
    with throw_away_home() as home:
        result = Desktop(home)
        result.start()
        yield result
        result.stop()


@pytest.fixture
def open_dialog(desktop):
    """Starts dialogs."""
    dialogs = []

    def start(*commands, **environment):
        dialogs.append(Dialog(desktop, *commands, **environment))
        return dialogs[-1]
    yield start
    for dialog in dialogs:
        dialog.process.kill()
        dialog.process.communicate()
