"""A desktop without a screen, with a throw-away home, and ways to run Sprig's dialogs on it as their users see them."""

import json
import os
import pathlib
import re
import select
import shutil
import subprocess
import tempfile
import time

import pytest

DIALOG = pathlib.Path(os.environ.get("SPRIG_DIALOG", "build/bin/sprig-dialog")).resolve()
FAILURES = pathlib.Path(os.environ.get("SPRIG_FAILURES", tempfile.gettempdir())).resolve()
DEADLINE = int(os.environ.get("SPRIG_DEADLINE", "20"))  # seconds; a sanitized program on a busy machine is slow
WITHIN_WINDOW = 1  # the other origin that screen readers can ask for, the screen, is one that GTK 4 doesn't know
TOOLS = {"Xvfb": "xvfb", "dbus-daemon": "dbus-daemon", "openbox": "openbox", "xcompmgr": "xcompmgr",
         "xdotool": "xdotool", "wmctrl": "wmctrl", "xprop": "x11-utils", "xclip": "xclip"}

PROMPT = {"command": "show", "title": "New Meeting Notes",
          "text": "Enter a name for the new file in “Projects”:",
          "icon": {"names": ["accessories-text-editor-symbolic"], "size": 36, "description": "Meeting Notes"},
          "field": {"text": "Meeting Notes 2026-11-16.md", "width": 300},
          "buttons": [{"title": "Create", "key": "return"}, {"title": "Cancel", "key": "escape"}], "floating": True}
ALERT = {"command": "show", "title": "Permission Denied",
         "text": "You don't have permission to write files in this directory.",
         "icon": {"names": ["dialog-warning"], "size": 36, "description": ""},
         "buttons": [{"title": "Close", "key": "return"}]}
BASE = {"command": "change", "selection": {"location": 0, "length": 24}}


def wait_for(question, what):
    """What `question` answers as soon as that is something."""
    end = time.monotonic() + DEADLINE
    while not (answer := question()):
        assert time.monotonic() < end, f"waited too long for {what}"
        time.sleep(0.01)
    return answer


def output_of(*command):
    return subprocess.run(command, capture_output=True, text=True, check=False, timeout=DEADLINE).stdout.strip()


def nodes(accessible):
    """The accessible object and all below it."""
    yield accessible
    for index in range(accessible.get_child_count()):
        yield from nodes(accessible.get_child_at_index(index))


class Desktop:
    """An X server, a session bus and a window manager of our own."""

    def __init__(self, home):
        self.home = pathlib.Path(home)
        self.processes = []
        self.log = open(self.home / "desktop.log", "w", encoding="utf-8")
        self.environment = {
            "HOME": home, "PATH": "/usr/bin:/bin", "LC_ALL": "C.UTF-8", "XDG_RUNTIME_DIR": home,
            "XDG_CONFIG_HOME": f"{home}/config", "GSETTINGS_BACKEND": "keyfile", "GDK_BACKEND": "x11",
            "GTK_USE_PORTAL": "0", "GIO_USE_VFS": "local",
            # GTK and what it uses keep much for ever.
            "ASAN_OPTIONS": "detect_leaks=0"}
        self.write("config/gtk-4.0/settings.ini", "[Settings]\ngtk-enable-animations=0\ngtk-cursor-blink=0\n")

    def write(self, name, text):
        file = self.home / name
        file.parent.mkdir(parents=True, exist_ok=True)
        file.write_text(text, encoding="utf-8")

    def start(self):
        self.environment["DISPLAY"] = ":" + self.announcing(
            "Xvfb", "-displayfd", "{}", "-screen", "0", "1000x700x24", "-nolisten", "tcp", "-noreset")
        self.environment["DBUS_SESSION_BUS_ADDRESS"] = self.announcing(
            "dbus-daemon", "--session", "--nofork", "--print-address={}")
        # The test is a client of both, too.
        os.environ.update(self.environment)
        import gi
        gi.require_version("Atspi", "2.0")
        self.launch("openbox", "--sm-disable")
        wait_for(lambda: "openbox" in output_of("wmctrl", "-m").lower(), "the window manager")
        self.launch("xcompmgr", "-n")

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

    def stop(self):
        for process in reversed(self.processes):
            process.terminate()
            process.wait(DEADLINE)
        self.log.close()

    def screenshot(self, file):
        from PIL import ImageGrab
        image = ImageGrab.grab(xdisplay=self.environment["DISPLAY"])
        image.save(file)
        return image


class Dialog:
    """One run of the program, as the extension sees it (commands and events) and as its user does."""

    def __init__(self, *commands, **environment):
        merged = {**os.environ, **environment}
        self.process = subprocess.Popen(
            [DIALOG], stdin=subprocess.PIPE, stdout=subprocess.PIPE, stderr=subprocess.PIPE,
            env={name: value for name, value in merged.items() if value is not None})
        self.received = b""
        self.tell(*commands)

    def tell(self, *commands):
        for command in commands:
            self.write(json.dumps(command).encode() + b"\n")

    def write(self, data):
        self.process.stdin.write(data)
        self.process.stdin.flush()

    def event(self):
        """The next event."""
        while b"\n" not in self.received:
            assert select.select([self.process.stdout], [], [], DEADLINE)[0], "waited too long for an event"
            data = os.read(self.process.stdout.fileno(), 65536)
            assert data, "the dialog ended: " + self.process.stderr.read().decode()
            self.received += data
        line, self.received = self.received.split(b"\n", 1)
        return json.loads(line)

    def shown(self):
        """The same, once the window is there and has the keyboard."""
        assert self.event() == {"event": "shown"}
        wait_for(self.is_active, "the focus")
        return self

    @property
    def window(self):
        """The window's number; empty while it is not on the screen."""
        # GTK has a small window of its own besides the one on the screen.
        return "".join(output_of("xdotool", "search", "--onlyvisible", "--pid", str(self.process.pid)).split()[-1:])

    def is_active(self):
        return self.window and output_of("xdotool", "getactivewindow") == self.window

    def geometry(self):
        said = output_of("xdotool", "getwindowgeometry", "--shell", self.window)
        values = dict(line.split("=") for line in said.splitlines())
        return tuple(int(values[key]) for key in ("X", "Y", "WIDTH", "HEIGHT"))

    def property(self, name):
        return output_of("xprop", "-id", self.window, name)

    def press(self, *keys):
        output_of("xdotool", "key", "--clearmodifiers", *keys)
        return self

    def type(self, text):
        output_of("xdotool", "type", text)
        return self

    def click(self, name):
        """Presses the button of that name with the mouse."""
        window = self.accessible()
        button = next(node for node in nodes(window) if (node.get_role_name(), node.get_name()) == ("push button", name))
        left, top, width, height = self.geometry()
        # GTK tells places within the window's content, which the frame stands around.
        frame, place = (node.get_component_iface().get_extents(WITHIN_WINDOW) for node in (window, button))
        across = left + (width - frame.width) // 2 + place.x + place.width // 2
        down = top + (height - frame.height) // 2 + place.y + place.height // 2
        output_of("xdotool", "mousemove", str(across), str(down), "click", "1")

    def close_by_window_manager(self):
        output_of("wmctrl", "-i", "-c", self.window)

    def ends(self):
        """The exit status and what was said on standard error."""
        errors = self.process.communicate(timeout=DEADLINE)[1].decode()
        return self.process.returncode, errors

    def picture(self, file):
        """The window on the screen without its shadow, as a picture."""
        left, top, width, height = self.geometry()
        shadow = [int(number) for number in re.findall(r"\d+", self.property("_GTK_FRAME_EXTENTS").partition("=")[2])]
        inset = shadow or [0, 0, 0, 0]
        image = self.desktop.screenshot(file).crop(
            (left + inset[0], top + inset[2], left + width - inset[1], top + height - inset[3]))
        image.save(file, optimize=True)
        return image

    def accessible(self):
        """The window as a screen reader finds it."""
        from gi.repository import Atspi

        def look():
            root = Atspi.get_desktop(0)
            for index in range(root.get_child_count()):
                application = root.get_child_at_index(index)
                if application and application.get_process_id() == self.process.pid and application.get_child_count():
                    return application.get_child_at_index(0)
            return None
        return wait_for(look, "the accessible window")


@pytest.fixture(scope="session")
def desktop():
    for tool, package in TOOLS.items():
        assert shutil.which(tool), f"{tool} is missing: install the Debian package {package}"
    home = tempfile.mkdtemp(prefix="sprig-desktop-")
    result = Desktop(home)
    result.start()
    yield result
    result.stop()
    shutil.rmtree(home)


@pytest.fixture
def open_dialog(desktop, request):
    """Starts dialogs; a failed test leaves what was on the screen and what was said."""
    dialogs = []

    def start(*commands, **environment):
        dialogs.append(Dialog(*commands, **environment))
        dialogs[-1].desktop = desktop
        return dialogs[-1]
    yield start
    if getattr(request.node, "has_failed", False):
        FAILURES.mkdir(parents=True, exist_ok=True)
        name = FAILURES / re.sub(r"\W+", "-", request.node.name)
        desktop.screenshot(f"{name}.png")
        shutil.copy(desktop.home / "desktop.log", f"{name}.log")
    for dialog in dialogs:
        dialog.process.kill()
        dialog.process.communicate()


@pytest.hookimpl(hookwrapper=True)
def pytest_runtest_makereport(item):
    report = (yield).get_result()
    item.has_failed = getattr(item, "has_failed", False) or report.failed
