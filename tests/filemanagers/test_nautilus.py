# SPDX-License-Identifier: GPL-3.0-or-later
"""What only GNOME Files has."""

import re

from driving import LabelledEntry, Nautilus
from gi.repository import GLib
from sprigtest.home import template
from sprigtest.screenreader import children, middle, wait_to_see
from sprigtest.waiting import output_of, wait_for


def test_a_template_is_picked_from_the_menu_of_the_path_bar(desktop, folder, manager):
    desktop.configure(template("Brand New"), template("Deep"), defaultBehavior="create", maxVisibleTemplates=1,
                      showCategories=False)
    button = middle(manager.settled_place(manager.menu_button, "the button"))
    manager.comes_to_list(button, "Brand New", "More Templates", "Deep", "Sprig Settings…", button=1)
    manager.pick("Deep")
    manager.shows(folder / "Deep.txt")


class NautilusOnWayland(Nautilus):
    """Without mouse and keyboard, as nobody has them there: used as screen readers do it."""

    def __init__(self, desktop, folder):
        self.process = desktop.launch(*(word.format(folder) for word in self.command))

    def use(self, role, name=None):
        def found():
            return [part for part in map(LabelledEntry._make, self._parts(role)) if name in (None, part.name)]
        wait_to_see(found, name or role)[0].ask("Action", "DoAction", "(i)", 0)

    def menu_button(self):
        return children(super().menu_button())[0]


def test_under_wayland_the_prompt_takes_the_focus_and_newer_releases_of_gtk_say_in_front_of_what(desktop, folder):
    desktop.configure(template("Plain Text"), defaultBehavior="prompt")
    with desktop.on_wayland() as said:
        manager = NautilusOnWayland(desktop, folder)
        wait_for(manager.menu_button, "the window", not_yet=(GLib.Error, StopIteration)).ask("Action", "DoAction", "(i)", 0)
        manager.use("menu item", "Sprig")
        before = len(said())
        manager.use("menu item", "Plain Text")
        wait_for(lambda: re.search(r'\.done\("(\w+)"\).*\.activate\("\1", ', said()[before:], re.DOTALL), "the token")
        if [int(part) for part in output_of("pkg-config", "--modversion", "gtk4").split(".")] >= [4, 12]:
            handle = r'\.handle\("(\w+)"\).*\.import\w*\([^\n]*"\1"\).*\.set_parent_of\('
            wait_for(lambda: re.search(handle, said(), re.DOTALL), "the window’s handle")
        desktop.end(manager.process)
