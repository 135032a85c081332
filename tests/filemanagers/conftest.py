"""One desktop for all tests of a file manager, as a process can get to the screen reader's side of one only. Each test
has a folder, a configuration, an extension and a run of the file manager of its own; one that fails leaves what was on
the screen and what was said."""

import os
import pathlib
import re
import shutil
import tempfile

import pytest
from driving import KILL, Desktop, file_manager, template, wait_for

FAILURES = pathlib.Path(os.environ.get("SPRIG_FAILURES", tempfile.gettempdir()))


@pytest.fixture(scope="session")
def session():
    home = pathlib.Path(tempfile.mkdtemp(prefix="sprig-manager-"))
    result = Desktop(home)
    try:
        result.start()
        yield result
    finally:
        result.stop()
        shutil.rmtree(home)


@pytest.fixture
def desktop(session):
    session.extension_log.unlink(missing_ok=True)
    yield session
    session.signal_extension(KILL)
    wait_for(lambda: not session.extension_pids(), "the extension to go")


def keep(test, desktop):
    FAILURES.mkdir(parents=True, exist_ok=True)
    name = FAILURES / (f"{os.environ['SPRIG_MANAGER']}-" + re.sub(r"\W+", "-", test))
    desktop.screenshot(f"{name}.png")
    shutil.copy(desktop.home / "desktop.log", f"{name}.log")
    if desktop.extension_log.exists():
        shutil.copy(desktop.extension_log, f"{name}-extension.log")


@pytest.fixture
def folder(desktop):
    """A folder with a file and a folder in it."""
    result = desktop.home / "demo"
    (result / "inner").mkdir(parents=True)
    (result / "letter.txt").write_text("x")
    yield result
    shutil.rmtree(result)


@pytest.fixture
def open_manager(desktop):
    """Opens the file manager on a folder."""
    managers = []

    def start(place):
        managers.append(file_manager(desktop, os.environ["SPRIG_MANAGER"], place))
        return managers[-1]
    yield start
    for manager in managers:
        manager.stop()


@pytest.fixture
def manager(desktop, folder, open_manager):
    """The file manager, which shows the folder, with a few templates."""
    desktop.configure(template("R&D_notes"), template("Plain Text"), template("More 1"),
                      template("Hidden", enabled=False), defaultBehavior="create", maxVisibleTemplates=2,
                      showCategories=False)
    result = open_manager(folder)
    result.row("letter.txt")
    return result


@pytest.hookimpl(hookwrapper=True)
def pytest_runtest_makereport(item):
    report = (yield).get_result()
    # Now, as long as all windows are there.
    if report.failed and "desktop" in item.funcargs:
        keep(item.name, item.funcargs["desktop"])
