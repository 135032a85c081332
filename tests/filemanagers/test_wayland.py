# SPDX-License-Identifier: GPL-3.0-or-later
"""Under Wayland, where only the token of a click lets a window take the focus."""

import os
import re

import pytest
from driving import Dolphin, LabelledEntry, Nautilus
from gi.repository import GLib
from sprigtest.home import template
from sprigtest.screenreader import children, wait_to_see
from sprigtest.waiting import output_of, wait_for


class OnWayland:
    @staticmethod
    def find_window():
        """Nobody is told of windows there."""


class NautilusOnWayland(OnWayland, Nautilus):
    """Used as screen readers do it."""

    @staticmethod
    def do(accessible):
        return accessible.ask("Action", "DoAction", "(i)", 0)

    def open_submenu(self):
        def button():
            return children(self.menu_button())[0]
        self.do(wait_for(button, "the window", not_yet=(GLib.Error, StopIteration)))
        self.pick("Sprig")

    def pick(self, name):
        def found():
            return [part for part in map(LabelledEntry._make, self._parts("menu item")) if part.name == name]
        self.do(wait_to_see(found, name)[0])


class DolphinOnWayland(OnWayland, Dolphin):
    """Used with the keyboard."""

    def open_submenu(self):
        self.open_menu(None)
        self.enter_by_keys("Sprig")

    def pick(self, name):
        self.pick_by_keys(name)


@pytest.mark.parametrize("entry", ["Plain Text", "Sprig Settings…"])
def test_the_token_of_a_pick_gives_what_it_opens_the_focus(desktop, folder, entry):
    desktop.configure(template("Plain Text"), defaultBehavior="prompt")
    manager_class = {"nautilus": NautilusOnWayland, "dolphin": DolphinOnWayland}[os.environ["SPRIG_MANAGER"]]
    with desktop.on_wayland() as screen:
        manager = manager_class(screen, folder)
        manager.open_submenu()
        before = len(screen.said())
        manager.pick(entry)

        def is_taken():
            """Whether the new window shows a token that the file manager has got."""
            of_manager, *of_window = re.split(r'\.bind\(\d+, "xdg_wm_base"', screen.said()[before:], maxsplit=1)
            tokens = re.findall(r'\.done\("(\w+)"\)', of_manager)
            return any(f'.activate("{token}", ' in said for token in tokens for said in of_window)
        wait_for(is_taken, "the token")
        newer_gtk = [int(part) for part in output_of("pkg-config", "--modversion", "gtk4").split(".")] >= [4, 12]
        if newer_gtk and isinstance(manager, Nautilus) and entry == "Plain Text":
            handle = r'\.handle\("(\w+)"\).*\.import\w*\([^\n]*"\1"\).*\.set_parent_of\('
            wait_for(lambda: re.search(handle, screen.said(), re.DOTALL), "the window’s handle")
        output_of("pkill", "sprig-settings")
        manager.stop()
