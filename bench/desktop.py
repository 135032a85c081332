# SPDX-License-Identifier: GPL-3.0-or-later
"""Measures what needs a screen: the prompt, a pick in Thunar, the settings, and the extension's memory. Prints the
samples as JSON, nanoseconds and bytes.

Runs where the tests of the file managers do, in session.sh.
"""

import json
import os
import pathlib
import re
import select
import subprocess
import sys
import time

from driving import SprigDesktop, Thunar
from sprigtest.bus import rows_in
from sprigtest.home import template, throw_away_home
from sprigtest.screenreader import middle, nodes, wait_to_see, windows
from sprigtest.waiting import DEADLINE, output_of, wait_for

BENCH = pathlib.Path(os.environ["SPRIG_BENCH"])
PROGRAMS = pathlib.Path(os.environ["SPRIG_PROGRAMS"])
PROMPTS = 15
PICKS = 11
STARTS = 11
SETTINGS_SIZE = ("700", "720")
KEYS = 192
CONTENT = "made of a template\n" * 54  # 1 kB
NAME = "com.kestrel.Sprig.Extension"
PATH = "/com/kestrel/Sprig/Extension"
BARE = "com.kestrel.Sprig.Bare"


class Bus:
    """The session bus, as a file manager uses it."""

    def __init__(self, folder):
        from gi.repository import Gio, GLib
        self.connection = Gio.bus_get_sync(Gio.BusType.SESSION)
        self.variant = GLib.Variant
        self.targets = [GLib.filename_to_uri(str(folder))]

    def call(self, service, path, method, signature, *arguments):
        interface, _, name = method.rpartition(".")
        return self.connection.call_sync(service, path, interface, name, self.variant(signature, arguments), None, 0,
                                         DEADLINE * 1000).unpack()

    def menu(self):
        rows = self.call(NAME, PATH, f"{NAME}1.GetMenu", "(uasa{sv})", 1, self.targets, {})[1]
        return rows_in(rows)

    def activate(self, action):
        self.call(NAME, PATH, f"{NAME}1.Activate", "(suasa{sv})", action, 1, self.targets, {})

    def process(self, service):
        return self.call("org.freedesktop.DBus", "/", "org.freedesktop.DBus.GetConnectionUnixProcessID", "(s)",
                         service)[0]


def memory(process):
    """The bytes of a process that are in memory, those that it has to itself, and of these what it has written. The
    rest is of files, for whoever needs them next."""
    rollup = pathlib.Path(f"/proc/{process}/smaps_rollup").read_text()
    sizes = {name: 1024 * int(size) for name, size in re.findall(r"^(\w+): +(\d+) kB$", rollup, re.MULTILINE)}
    return {"resident": sizes["Rss"], "private": sizes["Private_Clean"] + sizes["Private_Dirty"],
            "written": sizes["Private_Dirty"]}


class ActiveWindow:
    """Which window has the keyboard, told by the window manager as it changes. One window is there all the time, as it
    tells of changes between windows only."""

    def __init__(self, desktop):
        desktop.launch(BENCH / "sprig-bench-bare-window", "Always there", "400", "300")
        wait_for(lambda: output_of("xdotool", "getactivewindow", "getwindowname") == "Always there", "a first window")
        self.first = int(output_of("xdotool", "getactivewindow"))
        self.process = desktop.spy("xprop", "-root", "-spy", "_NET_ACTIVE_WINDOW")

    def wait_for(self, is_wanted):
        """The next window that is wanted, and when it got the keyboard."""
        while True:
            assert select.select([self.process.stdout], [], [], DEADLINE)[0], "waited too long for a window"
            line = os.read(self.process.stdout.fileno(), 4096)
            now = time.perf_counter_ns()
            window = int(re.findall(rb"0x[0-9a-f]+", line)[-1], 16)
            if is_wanted(window):
                return window, now

    def until_open(self, begin):
        window, now = self.wait_for(lambda window: window not in (0, self.first))
        return window, now - begin

    def close(self, window):
        output_of("wmctrl", "-i", "-c", hex(window))
        self.wait_for(lambda active: active == self.first)


class Measuring(SprigDesktop):
    """A desktop on which a clock runs."""

    def __init__(self, home):
        super().__init__(home)
        self.samples = {}
        self.folder = home.demo

    def note(self, name, value):
        self.samples.setdefault(name, []).append(value)

    def note_memory(self, name, service):
        for kind, size in memory(self.bus.process(service)).items():
            self.note(f"memory/{kind}/{name}", size)

    def begin(self):
        self.start()
        self.bus = Bus(self.folder)

    def spy(self, *command):
        process = subprocess.Popen(command, env=self.environment, stdout=subprocess.PIPE)
        self.processes.append(process)
        return process

    def measure_memory(self):
        self.launch(BENCH / "sprig-bench-bare-service")
        wait_to_see(lambda: self.bus.process(BARE), "the bare service")
        self.note_memory("bare", BARE)
        for count in (11, 1000):
            self.configure(*(template(f"Template {number}", content=CONTENT[:500]) for number in range(count)))
            assert len(self.bus.menu()) > count
            self.note_memory(str(count), NAME)
            self.end_extension()

    def measure_prompt(self):
        self.configure(template("Plain Text"), defaultBehavior="prompt")
        self.bus.menu()
        active = self.active = ActiveWindow(self)
        size = self.open_prompt(active, "before")
        for _ in range(PROMPTS):
            self.note("prompt/floor", self.bare_window(active, size))
            self.open_prompt(active, "after", "prompt/ours")
        self.end_extension()

    def open_prompt(self, active, memory_name, name=None):
        """Opens and closes it; its width and height."""
        begin = time.perf_counter_ns()
        self.bus.activate("template:plain-text")
        window, taken = active.until_open(begin)
        geometry = output_of("xdotool", "getwindowgeometry", "--shell", str(window))
        if name:
            self.note(name, taken)
        active.close(window)
        self.bus.menu()  # answered after the pick
        self.note_memory(memory_name, NAME)
        return re.findall(r"(?:WIDTH|HEIGHT)=(\d+)", geometry)

    def bare_window(self, active, size):
        return self.start_of(active, BENCH / "sprig-bench-bare-window", "New Plain Text", *size)

    def start_of(self, active, *command):
        """How long a program takes to a window that has the keyboard."""
        begin = time.perf_counter_ns()
        process = self.launch(*command)
        window, taken = active.until_open(begin)
        active.close(window)
        process.wait(DEADLINE)
        return taken

    def measure_settings(self):
        # What our windows are drawn by, for the bare one, too.
        self.environment["GSK_RENDERER"] = "cairo"
        for count in (0, 11, 1000, 100_000):
            self.configure(*(template(f"Template {number}") for number in range(count)))
            keys = subprocess.run([BENCH / "sprig-bench-search", str(KEYS)], env=self.environment, check=True,
                                  stdout=subprocess.PIPE, stderr=self.log, text=True, timeout=DEADLINE).stdout
            self.samples[f"search/{count}"] = [int(time) for time in keys.split()]
            for _ in range(STARTS if count in (11, 1000) else 0):
                self.note(f"settings/ours/{count}", self.start_of(self.active, PROGRAMS / "sprig-settings"))
                bare = (BENCH / "sprig-bench-bare-window", "Bare", *SETTINGS_SIZE, str(count))
                self.note(f"settings/floor/{count}", self.start_of(self.active, *bare))

    def measure_picks(self):
        self.home.write("Templates/Theirs", CONTENT)
        self.home.write(".config/user-dirs.dirs", 'XDG_TEMPLATES_DIR="$HOME/Templates"\n')
        self.configure(template("Ours", content=CONTENT, filenamePattern="Ours", extension=""),
                       defaultBehavior="create")
        (self.folder / "letter.txt").write_text("x")
        manager = Thunar(self, self.folder)
        for _ in range(PICKS):
            self.note("thunar/ours", self.pick_ours(manager))
            self.note("thunar/floor", self.pick_theirs(manager))
        manager.stop()
        self.end_extension()

    def pick_ours(self, manager):
        manager.open_menu(manager.background())
        manager.pick("Sprig")
        manager.point("Ours")
        wait_to_see(lambda: manager.highlighted_entry() == "Ours", "the entry under the pointer")
        return self.until_there(self.folder / "Ours")

    def pick_theirs(self, manager):
        self.click(manager.background(), button=3)
        manager.pick("Create Document", "Theirs")

        def button():
            """It asks for a name first."""
            return next(node for window in windows(manager.process.pid)
                        for node in nodes(window, {"push button"}, "Create"))
        self.point(middle(manager.settled_place(button, "the question")))
        return self.until_there(self.folder / "Theirs")

    @staticmethod
    def until_there(file):
        """Clicks, and waits for the whole file."""
        begin = time.perf_counter_ns()
        with subprocess.Popen(["xdotool", "click", "1"]):
            while not file.exists() or file.stat().st_size < len(CONTENT):
                assert time.perf_counter_ns() < begin + DEADLINE * 1e9, f"{file} doesn't come"
            taken = time.perf_counter_ns() - begin
        file.unlink()
        return taken


def main():
    with throw_away_home() as home:
        desktop = Measuring(home)
        try:
            desktop.begin()
            desktop.measure_memory()
            desktop.measure_prompt()
            desktop.measure_picks()
            desktop.measure_settings()
        except BaseException:
            sys.stderr.write(desktop.output.read_text(errors="replace"))
            raise
        finally:
            desktop.stop()
    json.dump(desktop.samples, sys.stdout)


if __name__ == "__main__":
    main()
