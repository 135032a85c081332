"""A desktop without a screen and a file manager on it, used as people use it: seen through what a screen reader gets,
acted upon with keys and mouse.

Everything here runs inside session.sh, so it has this process group, mounts and user to itself.
"""

import dataclasses
import json
import os
import pathlib
import re
import shutil
import signal
import subprocess
import time

DEADLINE = int(os.environ.get("SPRIG_DEADLINE", "30"))  # seconds
PROGRAMS = pathlib.Path(os.environ["SPRIG_PROGRAMS"])
TOOLS = {"Xvfb": "xvfb", "dbus-daemon": "dbus-daemon", "openbox": "openbox", "xcompmgr": "xcompmgr",
         "xdotool": "xdotool", "wmctrl": "wmctrl"}
ENTRIES = {"menu", "menu item"}


@dataclasses.dataclass(frozen=True)
class Profile:
    """What tells one file manager from another, for who uses it."""
    command: tuple
    window_class: str
    # Where in a row of the list a click is one on the item, from its left end.
    row_offset: int = 20
    # Whether it selects a file that it is told to show although its list may not have the file yet.
    selects_new_files: bool = True


PROFILES = {
    "thunar": Profile(("thunar", "{}"), "thunar"),
    # Opens a window for the file each time, and selects it most times.
    "caja": Profile(("caja", "--no-desktop", "--browser", "{}"), "caja", selects_new_files=False),
    # Right beside a name, a click is one on the background.
    "nemo": Profile(("nemo", "{}"), "nemo", row_offset=4),
    # Shows icons with their names below: what is not in the middle is the background.
    "dolphin": Profile(("dolphin", "--new-window", "{}"), "dolphin", row_offset=1000),
}

SETTINGS = {
    "gtk-3.0/settings.ini": "[Settings]\ngtk-menu-images=1\ngtk-enable-animations=0\n",
    "gtk-4.0/settings.ini": "[Settings]\ngtk-enable-animations=0\n",
    # Only lists have rows that a screen reader can read.
    "glib-2.0/settings/keyfile": "[org/mate/caja/preferences]\ndefault-folder-viewer='list-view'\n"
                                 "[org/nemo/preferences]\ndefault-folder-viewer='list-view'\n",
    "xfce4/xfconf/xfce-perchannel-xml/thunar.xml":
        '<?xml version="1.0" encoding="UTF-8"?>\n<channel name="thunar" version="1.0">\n'
        '<property name="last-view" type="string" value="ThunarDetailsView"/>\n'
        '<property name="last-side-pane" type="string" value="ThunarShortcutsPane"/>\n</channel>\n',
    "kdeglobals": "[Icons]\nTheme=breeze\n",
    "dolphinrc": "[General]\nRememberOpenedTabs=false\n",
}


def wait_for(question, what):
    """What `question` answers as soon as that is something."""
    from gi.repository import GLib
    end = time.monotonic() + DEADLINE
    while True:
        try:
            if answer := question():
                return answer
        except GLib.Error:
            pass  # What was looked at has just gone.
        assert time.monotonic() < end, f"waited too long for {what}"
        time.sleep(0.02)


def take_news():
    """Lets in what the screen reader's side tells of changes."""
    from gi.repository import GLib
    while GLib.MainContext.default().iteration(False):
        pass


def output_of(*command):
    return subprocess.run(command, capture_output=True, text=True, check=False, timeout=DEADLINE).stdout.strip()


def end(process):
    process.terminate()
    try:
        process.wait(5)
    except subprocess.TimeoutExpired:
        process.kill()
        process.wait()


def template(name, **changes):
    item = {"id": name.lower().replace(" ", "-"), "name": name, "extension": ".txt", "filenamePattern": f"{name}.txt",
            "content": f"made of {name}\n", "icon": "doc.text", "category": "notes", "enabled": True,
            "favorite": False, "requiresInput": False, "isBuiltin": False}
    return {**item, **changes}


class Desktop:
    """An X server, a window manager, a session bus that starts Sprig, and a home folder."""

    def __init__(self, home):
        for tool, package in TOOLS.items():
            assert shutil.which(tool), f"{tool} is missing: install the Debian package {package}"
        self.home = pathlib.Path(home)
        self.config = self.home / ".config/sprig/config.json"
        self.extension_log = self.home / ".kestrel/sprig/extension.log"
        self.processes = []
        self.log = open(self.home / "desktop.log", "wb")
        (self.home / "run").mkdir(mode=0o700)
        (self.home / "passwd").write_text(f"ann:x:{os.getuid()}:{os.getgid()}:Ann Example:{home}:/bin/sh\n")
        (self.home / "group").write_text(f"ann:x:{os.getgid()}:\n")
        wrapper = next(pathlib.Path("/usr/lib").glob("*/libnss_wrapper.so"), None)
        assert wrapper, "libnss_wrapper.so is missing: install the Debian package libnss-wrapper"
        self.environment = {
            "HOME": str(home), "USER": "ann", "PATH": "/usr/bin:/bin", "LC_ALL": "C.UTF-8", "TZ": "UTC",
            "XDG_RUNTIME_DIR": f"{home}/run", "XDG_CONFIG_HOME": f"{home}/.config",
            "XDG_DATA_HOME": f"{home}/.local/share", "GSETTINGS_BACKEND": "keyfile", "GDK_BACKEND": "x11",
            "GSK_RENDERER": "cairo", "GTK_USE_PORTAL": "0", "GIO_USE_VFS": "local",
            "GIO_USE_VOLUME_MONITOR": "unix", "QT_QPA_PLATFORM": "xcb", "QT_LINUX_ACCESSIBILITY_ALWAYS_ON": "1",
            "LD_PRELOAD": str(wrapper),
            "NSS_WRAPPER_PASSWD": f"{home}/passwd", "NSS_WRAPPER_GROUP": f"{home}/group"}
        for name, text in SETTINGS.items():
            self.write(f".config/{name}", text)
        self.write(".local/share/dbus-1/services/com.kestrel.Sprig.Extension.service",
                   f"[D-BUS Service]\nName=com.kestrel.Sprig.Extension\nExec={PROGRAMS / 'sprig-extension'}\n")

    def write(self, name, text):
        file = self.home / name
        file.parent.mkdir(parents=True, exist_ok=True)
        file.write_text(text, encoding="utf-8")
        return file

    def configure(self, *templates, **settings):
        """Puts a configuration into its place at once, as an editor does."""
        document = {"version": 1, "settings": settings, "templates": list(templates)}
        self.write(".config/sprig/new.json", json.dumps(document)).replace(self.config)

    def start(self):
        self.environment["DISPLAY"] = ":" + self.announcing(
            "Xvfb", "-displayfd", "{}", "-screen", "0", "1100x760x24", "-nolisten", "tcp", "-noreset")
        self.environment["DBUS_SESSION_BUS_ADDRESS"] = self.announcing(
            "dbus-daemon", "--session", "--nofork", "--print-address={}")
        # The test is a client of both, too.
        os.environ.update({name: value for name, value in self.environment.items() if name != "LD_PRELOAD"})
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
            end(process)
        self.log.close()

    def screenshot(self, file):
        from PIL import ImageGrab
        ImageGrab.grab(xdisplay=self.environment["DISPLAY"]).save(file)

    def extension_pids(self):
        return [int(pid) for pid in output_of("pgrep", "-x", "sprig-extension").split()]

    def signal_extension(self, number):
        for pid in self.extension_pids():
            os.kill(pid, number)

    def press(self, *keys):
        output_of("xdotool", "key", "--clearmodifiers", *keys)

    def type(self, text):
        output_of("xdotool", "type", text)

    def click(self, place, button=1):
        across, down = map(str, place)
        # In two steps: menus follow a pointer that moves.
        output_of("xdotool", "mousemove", str(int(across) - 1), down)
        output_of("xdotool", "mousemove", across, down, "click", str(button))

    def dialog(self, title):
        """Waits until the dialog of that title has the keyboard."""
        wait_for(lambda: output_of("xdotool", "getactivewindow", "getwindowname") == title, f"the dialog “{title}”")


class FileManager:
    """A file manager that shows a folder."""

    def __init__(self, desktop, name, folder):
        self.desktop = desktop
        self.profile = PROFILES[name]
        self.process = desktop.launch(*(word.format(folder) for word in self.profile.command))
        self.application = wait_for(self._application, f"{name} on the screen reader's side")
        self.window = wait_for(self._window, f"{name}'s window")
        output_of("xdotool", "windowactivate", "--sync", self.window)

    def stop(self):
        end(self.process)

    def _application(self):
        from gi.repository import Atspi
        root = Atspi.get_desktop(0)
        for index in range(root.get_child_count()):
            application = root.get_child_at_index(index)
            if application and application.get_process_id() == self.process.pid:
                return application
        return None

    def _window(self):
        found = output_of("xdotool", "search", "--onlyvisible", "--class", self.profile.window_class).split()
        sizes = {window: output_of("xdotool", "getwindowgeometry", window) for window in found}
        large = [window for window, size in sizes.items() if int(re.search(r"(\d+)x\d+$", size)[1]) > 200]
        return large[-1] if large else None

    def showing(self, roles, name=None, top=None):
        """What of these roles, and that name, is on the screen."""
        from gi.repository import Atspi
        take_news()
        found = []

        def look(accessible):
            state = accessible.get_state_set()
            is_seen = state.contains(Atspi.StateType.SHOWING) and state.contains(Atspi.StateType.VISIBLE)
            if is_seen and accessible.get_role_name() in roles and name in (None, accessible.get_name()):
                found.append(accessible)
            for index in range(min(accessible.get_child_count(), 300)):
                child = accessible.get_child_at_index(index)
                if child:
                    look(child)
        look(top or self.application)
        return found

    def row(self, name):
        return wait_for(lambda: self.showing({"table cell"}, name), f"the row “{name}”")[0]

    @staticmethod
    def extents(accessible):
        from gi.repository import Atspi
        return Atspi.Component.get_extents(accessible, Atspi.CoordType.SCREEN)

    def on(self, name):
        """Where a click is one on the item of that name."""
        place = self.extents(self.row(name))
        return place.x + min(place.width // 2, self.profile.row_offset), place.y + place.height // 2

    def background(self):
        """Where a click is one on the background: below the rows."""
        place = self.extents(self.row("letter.txt"))
        return place.x + 60, place.y + 200

    def entry(self, name):
        """An entry of an open menu."""
        def look():
            return [entry for entry in self.showing(ENTRIES, name) if self.extents(entry).width > 0]
        return wait_for(look, f"“{name}” in the menu")[0]

    def submenu(self, name):
        """What a submenu lists, once it is open."""
        def look():
            entry = self.entry(name)
            return [child.get_name() for child in self.showing(ENTRIES, top=entry) if child != entry]
        return wait_for(look, f"the submenu “{name}”")

    def open_menu(self, place):
        self.desktop.click(place, button=3)
        self.entry("Sprig")

    def open_entries(self):
        """The names of what open menus list."""
        bars = {entry.get_name() for bar in self.showing({"menu bar"}) for entry in self.showing(ENTRIES, top=bar)}
        return [name for name in map(type(self.application).get_name, self.showing(ENTRIES)) if name not in bars]

    def has_no_menu(self):
        return not self.showing(ENTRIES, "Sprig")

    def pick(self, *names):
        """Goes through the open menu with the mouse."""
        for name in names:
            place = self.extents(self.entry(name))
            self.desktop.click((place.x + place.width // 2, place.y + place.height // 2))

    def pick_by_keys(self, *names):
        """Goes through the open menu with the keyboard."""
        for name in names:
            self.entry(name)
            for _ in range(60):
                if self.is_selected(name):
                    break
                before = self.selected()
                self.desktop.press("Down")
                wait_for(lambda: self.selected() != before, "the next entry")
            assert self.is_selected(name), f"“{name}” can't be reached"
            self.desktop.press("Right" if name != names[-1] else "Return")

    def selected(self):
        from gi.repository import Atspi
        return [entry.get_name() for entry in self.showing(ENTRIES)
                if entry.get_state_set().contains(Atspi.StateType.SELECTED)]

    def is_selected(self, name):
        return self.selected()[-1:] == [name]

    def selected_rows(self):
        """The selected rows of all windows."""
        from gi.repository import Atspi
        return {row.get_name() for row in self.showing({"table cell"})
                if row.get_state_set().contains(Atspi.StateType.SELECTED)}


class Dolphin(FileManager):
    """Qt tells a screen reader of a menu when it opens, and of an entry when it gets the focus; it counts neither among
    what the program's windows hold. Entries that Dolphin has in other menus, too, never seem to be in this one."""

    NEWS = ("object:state-changed:showing", "object:state-changed:focused")

    def __init__(self, desktop, name, folder):
        from gi.repository import Atspi
        self.menus = []
        self.focused = []
        self.listener = Atspi.EventListener.new(self._changed)
        for news in self.NEWS:
            self.listener.register(news)
        super().__init__(desktop, name, folder)

    def stop(self):
        for news in self.NEWS:
            self.listener.deregister(news)
        super().stop()

    def _changed(self, event):
        from gi.repository import GLib
        try:
            role, name = event.source.get_role_name(), event.source.get_name()
        except GLib.Error:
            return  # It is gone.
        if role == "popup menu" and event.detail1:
            self.menus.append(event.source)
        if role == "menu item" and event.detail1:
            self.focused = [name]

    def showing(self, roles, name=None, top=None):
        if top or not ENTRIES & set(roles):
            return super().showing(roles, name, top)
        return [entry for menu in self._open_menus() for entry in super(Dolphin, self).showing(roles, name, menu)]

    def _open_menus(self):
        """Those that stand in no other one."""
        from gi.repository import Atspi, GLib
        take_news()

        def is_open(menu):
            try:
                return menu.get_state_set().contains(Atspi.StateType.SHOWING)
            except GLib.Error:
                return False  # It is gone.
        self.menus = [menu for menu in self.menus if is_open(menu)]
        return [menu for menu in self.menus if menu.get_parent().get_role_name() != "menu item"]

    def selected(self):
        take_news()
        return self.focused


def file_manager(desktop, name, folder):
    return {"dolphin": Dolphin}.get(name, FileManager)(desktop, name, folder)


STOP, CONTINUE, KILL = signal.SIGSTOP, signal.SIGCONT, signal.SIGKILL
