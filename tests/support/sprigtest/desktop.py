# SPDX-License-Identifier: GPL-3.0-or-later
"""A desktop without a screen: its windows, keys and mouse."""

import os
import pathlib
import re
import shutil
import subprocess
import tempfile
import time

import pytest
from sprigtest.home import SOURCE, need
from sprigtest.screenreader import Area, area_in_gtk4, wait_to_see, windows
from sprigtest.waiting import output_of, settled, wait_for

PICTURES = os.environ.get("SPRIG_SCREENSHOTS")
FAILURES = pathlib.Path(os.environ.get("SPRIG_FAILURES", tempfile.gettempdir())).resolve()
TOOLS = {"Xvfb": "xvfb", "dbus-daemon": "dbus-daemon", "openbox": "openbox", "xcompmgr": "xcompmgr",
         "xdotool": "xdotool", "wmctrl": "wmctrl", "xprop": "x11-utils", "xclip": "xclip", "pgrep": "procps"}
SETTINGS = {
    "gtk-3.0/settings.ini": "[Settings]\ngtk-menu-images=1\ngtk-button-images=1\ngtk-enable-animations=0\n",
    "gtk-4.0/settings.ini": "[Settings]\ngtk-enable-animations=0\ngtk-cursor-blink=0\n",
}


def install_settings(home, program):
    """Makes a program the one that opens Sprig's URLs, as its package does."""
    entry = SOURCE / "packaging/com.kestrel.Sprig.desktop"
    home.write(f".local/share/applications/{entry.name}", entry.read_text())
    home.write(".local/share/applications/mimeinfo.cache", f"[MIME Cache]\nx-scheme-handler/sprig={entry.name};\n")
    home.write(".local/share/dbus-1/services/com.kestrel.Sprig.service",
               f"[D-BUS Service]\nName=com.kestrel.Sprig\nExec={program} --gapplication-service\n")
    for kind in ("scalable", "symbolic"):
        shutil.copytree(SOURCE / "packaging/icons" / kind, home.path / f".local/share/icons/hicolor/{kind}/apps",
                        dirs_exist_ok=True)


class Desktop:
    """An X server, a window manager and a session bus in the home of a user."""

    def __init__(self, home):
        for tool, package in TOOLS.items():
            need(tool, package)
        self.home = home
        self.processes = []
        self.output = home.path / "desktop.log"
        self.log = open(self.output, "wb")
        (home.path / "run").mkdir(mode=0o700)
        self.environment = home.env({
            "LC_ALL": "C.UTF-8", "XDG_RUNTIME_DIR": f"{home.path}/run", "XDG_CONFIG_HOME": f"{home.path}/.config",
            "XDG_DATA_HOME": f"{home.path}/.local/share", "GSETTINGS_BACKEND": "keyfile", "GDK_BACKEND": "x11",
            "GSK_RENDERER": "cairo", "GTK_USE_PORTAL": "0", "GIO_USE_VFS": "local", "GIO_USE_VOLUME_MONITOR": "unix",
            # GTK and what it uses keep much for ever.
            "ASAN_OPTIONS": home.environment["ASAN_OPTIONS"] + ":detect_leaks=0"})
        for name, text in SETTINGS.items():
            home.write(f".config/{name}", text)

    def start(self):
        self.environment["DISPLAY"] = ":" + self.announcing(
            "Xvfb", "-displayfd", "{}", "-screen", "0", "1100x760x24", "-nolisten", "tcp", "-noreset")
        self.start_bus()
        # The test is a client of both, too.
        os.environ.update({name: value for name, value in self.environment.items() if name != "LD_PRELOAD"})
        self.launch("openbox", "--sm-disable")
        wait_for(lambda: "openbox" in output_of("wmctrl", "-m").lower(), "the window manager")
        self.launch("xcompmgr", "-n")

    def start_bus(self):
        self.environment["DBUS_SESSION_BUS_ADDRESS"] = self.announcing(
            "dbus-daemon", "--session", "--nofork", "--print-address={}")

    def launch(self, *command, **options):
        process = subprocess.Popen(command, env=self.environment, stdout=self.log, stderr=self.log, **options)
        self.processes.append(process)
        return process

    def announcing(self, *command):
        """Starts a program that tells how to reach it on the descriptor that stands for "{}"."""
        reading, writing = os.pipe()
        self.launch(*(word.format(writing) for word in command), pass_fds=[writing])
        os.close(writing)
        with os.fdopen(reading) as stream:
            return stream.readline().strip()

    def end(self, process):
        self.processes.remove(process)
        process.terminate()
        try:
            process.wait(5)
        except subprocess.TimeoutExpired:
            process.kill()
            process.wait()

    def stop(self):
        for process in reversed(self.processes[:]):
            self.end(process)
        self.log.close()

    def screenshot(self):
        from PIL import ImageGrab
        return ImageGrab.grab(xdisplay=self.environment["DISPLAY"])

    def picture(self, name, crop):
        """Keeps what `crop` makes of the screen for the documents, if that is wanted."""
        if PICTURES:
            image = settled(self.screenshot, "the screen", between=lambda: time.sleep(0.2)).convert("RGB")
            pathlib.Path(PICTURES).mkdir(parents=True, exist_ok=True)
            crop(image).quantize(256).save(pathlib.Path(PICTURES, f"{name}.png"), optimize=True)

    def complaints(self, pattern, begin=0):
        """The lines that programs have said since so many bytes and that match a pattern."""
        said = self.output.read_bytes()[begin:].decode(errors="replace")
        return [line for line in said.splitlines() if re.search(pattern, line)]

    def keep(self, name):
        """Keeps what is on the screen and what was said, for whoever looks into a failure."""
        FAILURES.mkdir(parents=True, exist_ok=True)
        name = FAILURES / re.sub(r"\W+", "-", name)[:100]
        if self.processes:
            self.screenshot().save(f"{name}.png")
        for log in (self.output, self.home.log):
            if log.exists():
                shutil.copy(log, f"{name}-{log.name}")

    # Keys and mouse.

    def press(self, *keys):
        output_of("xdotool", "key", "--clearmodifiers", *keys)

    def type(self, text):
        output_of("xdotool", "type", text)

    def point(self, place):
        across, down = place
        # In two steps: menus follow a pointer that moves.
        output_of("xdotool", "mousemove", str(across - 1), str(down), "mousemove", str(across), str(down))

    def click(self, place, button=1):
        self.point(place)
        output_of("xdotool", "click", str(button))

    # Windows, by their numbers.

    @staticmethod
    def active_window():
        return output_of("xdotool", "getactivewindow")

    @staticmethod
    def areas(*command):
        """Where the windows are that a command of xdotool finds, or one window."""
        said = output_of("xdotool", *command[:-1], "getwindowgeometry", "--shell", command[-1])
        values = iter(line.split("=")[1] for line in said.splitlines())
        return {window: Area(*map(int, place)) for window, *place, _screen in zip(*[values] * 6)}

    def area(self, window):
        return self.areas(window)[window]

    def windows_of(self, process, *options):
        return output_of("xdotool", "search", "--onlyvisible", "--all", "--pid", str(process.pid), *options).split()


class Gtk4Program:
    """A program that has its windows drawn by GTK 4, and its user. `window` is the number of the one that is in front;
    empty while there is none."""

    def __init__(self, desktop, process):
        self.desktop = desktop
        self.process = process

    def is_active(self):
        return self.window and self.desktop.active_window() == self.window

    def accessible(self):
        """The window as a screen reader finds it."""
        return wait_to_see(lambda: windows(self.process.pid), "the accessible window")[0]

    def place(self, node):
        """Where something in the window is on the screen."""
        return area_in_gtk4(node, self.desktop.area(self.window), self.accessible())

    def press(self, *keys):
        self.desktop.press(*keys)
        return self

    def type(self, text):
        self.desktop.type(text)
        return self


@pytest.hookimpl(hookwrapper=True)
def pytest_runtest_makereport(item):
    """Hears of each test's outcome as long as all its windows are there; of the tests whose conftest imports it."""
    if (yield).get_result().failed and "desktop" in item.funcargs:
        item.funcargs["desktop"].keep(item.name)
