# SPDX-License-Identifier: GPL-3.0-or-later
"""What only GNOME Files has."""

from sprigtest.home import template
from sprigtest.screenreader import middle, wait_to_see
from sprigtest.waiting import wait_for


def test_a_template_is_picked_from_the_menu_of_the_path_bar(desktop, folder, manager):
    desktop.configure(template("Brand New"), template("Deep"), defaultBehavior="create", maxVisibleTemplates=1,
                      showCategories=False)

    def offered():
        manager.open_menu(middle(manager.settled_place(manager.menu_button, "the button")), button=1)
        manager.pick("Sprig")
        if manager.submenu("Sprig") == ["Brand New", "More Templates", "Deep", "Sprig Settings…"]:
            return True
        manager.close_menus()
        return False
    wait_to_see(offered, "the new menu")
    manager.pick("Deep")
    made = folder / "Deep.txt"
    wait_for(made.exists, "the file")
    manager.shows(made)
