"""What only Dolphin has."""

import signal

from sprigtest.waiting import wait_for


def test_a_menu_that_comes_late_goes_into_the_open_one(desktop, folder, manager):
    desktop.start_extension()
    desktop.signal_extension(signal.SIGSTOP)
    manager.time_to_menu(manager.on("inner"))
    assert "Sprig" not in manager.listed()
    desktop.signal_extension(signal.SIGCONT)
    manager.pick("Sprig", "Plain Text")
    wait_for((folder / "inner/Plain Text.txt").exists, "the file")
