# SPDX-License-Identifier: GPL-3.0-or-later
"""Measures in one file manager what its user waits for: its start, and its menus. Prints the samples as JSON,
nanoseconds and bytes: of the file manager as it is in this session, with Sprig's module or without.

Runs where the tests of the file managers do, in session.sh.
"""

import json
import os
import select
import sys
import time

from desktop import memory
from driving import MANAGERS, SprigDesktop
from sprigtest.home import template, throw_away_home
from sprigtest.waiting import DEADLINE, output_of, wait_for
from Xlib import X, XK
from Xlib.display import Display
from Xlib.ext import xtest

MANAGER = os.environ["SPRIG_MANAGER"]
WITH = os.environ["SPRIG_WITH"]
# Of each session; several are run.
STARTS = 5
MENUS = {11: 30, 1000: 30}
WIDEST_MENU = 350


class Screen:
    """Windows as the X server shows and hides them, and a mouse of its own, so that no program has to be started."""

    def __init__(self):
        self.display = Display()
        self.display.screen().root.change_attributes(event_mask=X.SubstructureNotifyMask)
        self.display.sync()

    def events(self, patience=DEADLINE):
        """Those of the next seconds, each with its time."""
        end = time.monotonic() + patience
        while self.display.pending_events() or select.select([self.display], [], [], max(0, end - time.monotonic()))[0]:
            if self.display.pending_events():
                yield self.display.next_event(), time.perf_counter_ns()

    def forget(self):
        self.display.sync()
        while self.display.pending_events():
            self.display.next_event()

    def until_large_window(self, begin):
        """What `begin` gives, and how long it took from there to a window of an application."""
        self.forget()
        start = time.perf_counter_ns()
        begun = begin()
        for event, now in self.events():
            if event.type == X.MapNotify and not event.override and event.window.get_geometry().width > WIDEST_MENU:
                return begun, now - start
        raise AssertionError("waited too long for a window")

    def open_menu(self):
        """The menu under the mouse. A file manager that is still busy with the one before may miss a click."""
        for _ in range(3):
            self.forget()
            start = time.perf_counter_ns()
            self.press_button(3)
            for event, now in self.events(2):
                if event.type == X.MapNotify and event.override:
                    return event.window, now - start
        raise AssertionError("waited too long for a menu")

    def close(self, menu):
        """A menu that has just come may not have the keyboard yet."""
        for _ in range(50):
            self.press_escape()
            for event, _ in self.events(0.2):
                if event.type in (X.UnmapNotify, X.DestroyNotify) and event.window.id == menu.id:
                    return
        raise AssertionError("waited too long for a menu to close")

    def press_button(self, number):
        for kind in (X.ButtonPress, X.ButtonRelease):
            xtest.fake_input(self.display, kind, number)
        self.display.flush()

    def press_escape(self):
        for kind in (X.KeyPress, X.KeyRelease):
            xtest.fake_input(self.display, kind, self.display.keysym_to_keycode(XK.XK_Escape))
        self.display.flush()


def main():
    samples = {}

    def note(what, value):
        samples.setdefault(f"felt/{MANAGER}/{what}/{WITH}", []).append(value)

    def measure_starts(desktop, screen):
        command = [word.format(desktop.home.demo) for word in MANAGERS[MANAGER].command]
        for _ in range(STARTS):
            process, taken = screen.until_large_window(lambda: desktop.launch(*command))
            note("start", taken)
            desktop.end(process)
            wait_for(lambda: not output_of("pgrep", "-x", MANAGER), "the file manager to go")

    def measure_menus(desktop, screen, count):
        desktop.home.configure(*(template(f"Template {number}") for number in range(count)))
        desktop.end_extension()
        manager = MANAGERS[MANAGER](desktop, desktop.home.demo)
        desktop.point(manager.middle())
        for index in range(MENUS[count] + 2):  # the first ones are of a file manager that is still busy
            menu, taken = screen.open_menu()
            if index >= 2:
                note(f"menu of {count}", taken)
            screen.close(menu)
        note(f"memory with {count}", memory(manager.process.pid)["written"])
        manager.stop()

    with throw_away_home() as home:
        (home.demo / "letter.txt").write_text("x")
        desktop = SprigDesktop(home)
        try:
            desktop.start()
            screen = Screen()
            measure_starts(desktop, screen)
            for count in MENUS:
                measure_menus(desktop, screen, count)
        except BaseException:
            sys.stderr.write(desktop.output.read_text(errors="replace"))
            raise
        finally:
            desktop.stop()
    json.dump(samples, sys.stdout)


if __name__ == "__main__":
    main()
