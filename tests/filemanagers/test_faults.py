# SPDX-License-Identifier: GPL-3.0-or-later
"""A file manager goes on, whatever becomes of Sprig's extension."""

import signal

import pytest

# Seconds. Alone on a machine, menus are there after half a second at most; a module may keep one waiting for 0.15.
PATIENCE = 1.5


def stop(desktop):
    desktop.start_extension()
    desktop.signal_extension(signal.SIGSTOP)


def never_appear(desktop):
    program = desktop.home.path / "sprig-extension"
    program.symlink_to("/usr/bin/sleep")
    desktop.reinstall(f"{program} 1000")


@pytest.fixture(params=[stop, never_appear])
def silence(desktop, request):
    """An extension that says nothing, in one way or another."""
    request.param(desktop)
    yield request.param.__name__
    (desktop.home.path / "sprig-extension").unlink(missing_ok=True)
    desktop.reinstall()


@pytest.fixture
def quick(capsys):
    """Opens a menu, says after what time it was there, and has that be short."""
    def open_menu(manager, place, circumstances):
        seconds = manager.time_to_menu(place)
        with capsys.disabled():
            print(f" {seconds:.2f} s {circumstances}", end="")
        assert seconds < PATIENCE
    return open_menu


def test_a_silent_extension_keeps_no_menu_waiting_and_its_end_in_the_middle_of_a_call_is_overcome(
        desktop, folder, open_manager, silence, quick):
    manager = open_manager(folder)
    for place in (manager.background(), manager.on("letter.txt")):
        quick(manager, place, silence)
        assert "Sprig" not in manager.listed()
        manager.close_menus()
    desktop.reinstall()
    desktop.end_extension()
    manager.comes_to_list(manager.background(), "Markdown Note")


def test_what_is_picked_beside_a_stopped_extension_is_done_once_it_goes_on(desktop, folder, manager, quick):
    manager.comes_to_list(manager.background(), "R&D_notes")
    manager.close_menus()
    desktop.signal_extension(signal.SIGSTOP)
    quick(manager, manager.background(), "stopped after it has answered")
    manager.pick("Sprig", "Plain Text")
    quick(manager, manager.on("letter.txt"), "with a pick that waits")
    manager.close_menus()
    desktop.signal_extension(signal.SIGCONT)
    manager.shows(folder / "Plain Text.txt")
