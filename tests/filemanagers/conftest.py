# SPDX-License-Identifier: GPL-3.0-or-later
"""One desktop for all tests of a file manager, as a process can get to the screen reader's side of one only. Each test
has a folder, a configuration, an extension and a run of the file manager of its own; one that fails leaves what was on
the screen and what was said."""

import os
import re
import shutil

import pytest
from driving import MANAGERS, SprigDesktop
from sprigtest.desktop import pytest_runtest_makereport
from sprigtest.home import template, throw_away_home

# What Sprig has file managers and toolkits complain of; they have complaints of their own.
OWN_OF_CAJA = re.compile(r".*g_file_get_uri: assertion 'G_IS_FILE.*\n+.*g_object_unref: assertion 'G_IS_OBJECT.*\n")  # on ShowItems
FAULT = re.compile(r"\b(GLib\w*|GLib-\w+|Gtk|Gdk|Sprig)-(CRITICAL|ERROR)|duplicate child name|terminate called")


@pytest.fixture(scope="session")
def session():
    with throw_away_home() as home:
        result = SprigDesktop(home)
        try:
            result.start()
            yield result
        finally:
            result.stop()


@pytest.fixture
def desktop(session):
    session.home.log.unlink(missing_ok=True)
    session.home.config.unlink(missing_ok=True)
    said = session.output.stat().st_size
    yield session
    session.end_extension()
    output = OWN_OF_CAJA.sub("", session.output.read_bytes()[said:].decode(errors="replace"))
    faults = [line for line in output.splitlines() if FAULT.search(line)]
    assert faults == []


@pytest.fixture
def folder(desktop):
    """A folder with a file and a folder in it."""
    result = desktop.home.demo
    (result / "inner").mkdir()
    (result / "letter.txt").write_text("x")
    yield result
    result.chmod(0o755)
    shutil.rmtree(result)
    result.mkdir()


@pytest.fixture
def open_manager(desktop):
    """Opens the file manager on a folder."""
    managers = []

    def start(place):
        managers.append(MANAGERS[os.environ["SPRIG_MANAGER"]](desktop, place))
        return managers[-1]
    yield start
    for manager in managers:
        manager.stop()


@pytest.fixture(params=MANAGERS[os.environ["SPRIG_MANAGER"]].views)
def view(desktop, request):
    """Each kind of view of the file manager, for the windows that are opened then."""
    manager = MANAGERS[os.environ["SPRIG_MANAGER"]]
    manager.choose_view(desktop, request.param)
    yield request.param
    manager.choose_view(desktop, manager.views[0])


@pytest.fixture
def manager(desktop, folder, open_manager):
    """The file manager, which shows the folder, with a few templates."""
    desktop.configure(template("R&D_notes"), template("Plain Text"), template("More 1"),
                      template("Hidden", enabled=False), defaultBehavior="create", maxVisibleTemplates=2,
                      showCategories=False)
    return open_manager(folder)
