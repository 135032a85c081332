# SPDX-License-Identifier: GPL-3.0-or-later
"""What only Nemo and Caja have: icons that a screen reader tells from one another by their labels, and the desktop, a
window without frame that shows the folder under an address of its own."""

import os
import pathlib

import pytest
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


@pytest.mark.usefixtures("view")
def test_a_new_file_is_told_from_another_one_that_looks_alike(desktop, folder, open_manager):
    other, new = [folder / pathlib.Path(os.fsdecode(name)) for name in (b"\xfe.txt", b"\xff.txt")]
    other.touch()
    open_manager(folder)
    wait_for(lambda: desktop.selects(folder / "letter.txt"), "the view")
    new.touch()
    assert desktop.selects(new)


@pytest.mark.usefixtures("view")
def test_a_file_is_selected_while_its_folder_is_still_being_read(desktop, open_manager):
    manager = open_manager("/")
    assert desktop.selects(pathlib.Path("/srv"))
    wait_for(lambda: manager.copies() == ["file:///srv"], "the file to be what keys are for")
