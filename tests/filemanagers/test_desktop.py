# SPDX-License-Identifier: GPL-3.0-or-later
"""The desktop, as Nemo and Caja draw it: a window without frame that shows the folder under an address of its own."""

import os

from driving import Caja, Nemo
from sprigtest.home import template
from sprigtest.waiting import wait_for


class NemoDesktop(Nemo):
    command = ("nemo-desktop",)


class CajaDesktop(Caja):
    command = ("caja", "--force-desktop", "--no-default-window")


def test_a_file_is_made_on_the_desktop_and_selected_there(desktop):
    made = desktop.home.path / "Desktop/zzz.txt"
    made.parent.mkdir(exist_ok=True)
    desktop.configure(template("zzz"), defaultBehavior="create")
    desktop.environment["DESKTOP_SESSION"] = desktop.environment["XDG_SESSION_DESKTOP"] = "mate"
    shown = {"nemo": NemoDesktop, "caja": CajaDesktop}[os.environ["SPRIG_MANAGER"]](desktop, made.parent)
    shown.open_menu(shown.middle())
    shown.pick("Sprig", "zzz")
    wait_for(lambda: shown.copies() == [made.as_uri()], "the file, and nothing else, to be what keys are for")
    assert len(shown.large_windows()) == 1
    shown.stop()
