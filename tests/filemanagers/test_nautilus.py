# SPDX-License-Identifier: GPL-3.0-or-later
"""What only GNOME Files has."""

from sprigtest.home import template
from sprigtest.screenreader import middle


def test_a_template_is_picked_from_the_menu_of_the_path_bar(desktop, folder, manager):
    desktop.configure(template("Brand New"), template("Deep"), defaultBehavior="create", maxVisibleTemplates=1,
                      showCategories=False)
    button = middle(manager.settled_place(manager.menu_button, "the button"))
    manager.comes_to_list(button, "Brand New", "More Templates", "Deep", "Sprig Settings…", button=1)
    manager.pick("Deep")
    manager.shows(folder / "Deep.txt")
