# SPDX-License-Identifier: GPL-3.0-or-later
"""A desktop with Sprig on it and the file managers, used as people use them: seen through what a screen reader gets,
acted upon with keys and mouse.

Everything here runs inside session.sh, so it has this process group, mounts and user to itself.
"""

import contextlib
import os
import pathlib
import re
import signal
import subprocess
import time

from gi.repository import Gio, GLib
from sprigtest.desktop import Desktop, install_settings
from sprigtest.home import need
from sprigtest.screenreader import (WITHIN_WINDOW, Accessible, area, area_in_gtk4, children, has, middle, nodes,
                                    on_change, selection_in, text_of, wait_to_see, windows)
from sprigtest.waiting import DEADLINE, output_of, settled, wait_for
from sprigtest.wayland import compositor

PROGRAMS = pathlib.Path(os.environ["SPRIG_PROGRAMS"])
SERVICE = "com.kestrel.Sprig.Extension"
ENTRIES = {"menu", "menu item"}
# What has too much in it to be looked into for something else.
VIEWS = {"table", "tree table", "layered pane", "list", "menu bar"}


def viewer_settings(view):
    return "".join(f"[org/{manager}/preferences]\ndefault-folder-viewer='{view}'\n"
                   for manager in ("mate/caja", "nemo", "gnome/nautilus"))


# Only lists have rows that a screen reader can read.
SETTINGS = {
    "glib-2.0/settings/keyfile": viewer_settings("list-view"),
    "xfce4/xfconf/xfce-perchannel-xml/thunar.xml":
        '<?xml version="1.0" encoding="UTF-8"?>\n<channel name="thunar" version="1.0">\n'
        '<property name="last-view" type="string" value="ThunarDetailsView"/>\n'
        '<property name="last-side-pane" type="string" value="ThunarShortcutsPane"/>\n</channel>\n',
    "kdeglobals": "[Icons]\nTheme=breeze\n",
    "dolphinrc": "[General]\nRememberOpenedTabs=false\n",
}


def without_empty_edges(image):
    from PIL import Image, ImageChops
    nothing = Image.new("RGB", image.size, image.getpixel((0, 0)))
    return image.crop(ImageChops.difference(image, nothing).getbbox())


class SprigDesktop(Desktop):
    """A desktop whose bus starts Sprig."""

    def __init__(self, home):
        super().__init__(home)
        for name, text in SETTINGS.items():
            home.write(f".config/{name}", text)
        home.write(".config/gtk-3.0/bookmarks", f"file://{home.demo}/inner Marked\n")
        install_settings(home, PROGRAMS / "sprig-settings")
        self.install(PROGRAMS / "sprig-extension")
        # Notifications of a service that is installed here would lie over what is to be clicked.
        home.write(".local/share/dbus-1/services/notifications.service",
                   "[D-BUS Service]\nName=org.freedesktop.Notifications\nExec=/bin/false\n")

    @contextlib.contextmanager
    def on_wayland(self):
        """Whatever is started meanwhile, by the bus, too, is on a Wayland compositor."""
        with compositor() as environment:
            screen = WaylandScreen(self, environment)
            news = {"GDK_BACKEND": "wayland", "QT_QPA_PLATFORM": "wayland", "QT_LINUX_ACCESSIBILITY_ALWAYS_ON": "1",
                    "WAYLAND_DEBUG": "client", "WAYLAND_DISPLAY": screen.display}
            before = {name: self.environment.get(name, "") for name in news}
            self.change_environment(news)
            try:
                yield screen
            finally:
                self.end_extension()
                self.change_environment(before)
                screen.stop()

    @contextlib.contextmanager
    def speaking(self, locale):
        """Whatever is started meanwhile, by the bus, too, speaks its language."""
        news = self.home.speaking(locale)
        before = {name: self.environment.get(name, "") for name in news}
        self.change_environment(news)
        try:
            yield
        finally:
            self.change_environment(before)

    def change_environment(self, news):
        self.environment |= news
        self.ask_bus("UpdateActivationEnvironment", news)

    def install(self, command):
        """Has the bus start the command for Sprig."""
        self.home.write(f".local/share/dbus-1/services/{SERVICE}.service",
                        f"[D-BUS Service]\nName={SERVICE}\nExec={command}\n")

    @staticmethod
    def call(name, path, interface, method, *arguments):
        """Over the bus; all arguments but flags and dictionaries are texts."""
        signature = "".join({int: "u", dict: "a{ss}"}.get(type(argument), "s") for argument in arguments)
        return Gio.bus_get_sync(Gio.BusType.SESSION).call_sync(
            name, path, interface, method, GLib.Variant(f"({signature})", arguments), None, Gio.DBusCallFlags.NONE, -1)

    def ask_bus(self, method, *arguments):
        return self.call("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", method, *arguments)

    def selects(self, file, window="", manager="org.freedesktop.FileManager1"):
        """Whether the module in a running file manager selects it when asked."""
        owner, = self.ask_bus("GetNameOwner", manager)
        return self.call(owner, "/com/kestrel/Sprig/FileManager", "com.kestrel.Sprig.FileManager1", "Select",
                         file.as_uri(), window)[0]

    def reinstall(self, command=PROGRAMS / "sprig-extension"):
        self.install(command)
        self.ask_bus("ReloadConfig")

    def start_extension(self):
        self.ask_bus("StartServiceByName", SERVICE, 0)

    @staticmethod
    def extension_pids():
        return [int(pid) for pid in output_of("pgrep", "-x", "sprig-extension").split()]

    def signal_extension(self, number):
        for pid in self.extension_pids():
            os.kill(pid, number)

    def end_extension(self):
        self.signal_extension(signal.SIGKILL)
        wait_for(lambda: not self.extension_pids(), "the extension to go")

    def configure(self, *templates, **settings):
        """Changes the configuration; a running extension has taken notice, and been asked for the new menus."""
        before = len(self.home.log.read_text()) if self.home.log.exists() else 0
        self.home.configure(*templates, **settings)
        if self.extension_pids():
            news = re.compile(rf"Loaded config with {len(templates)} total.*menu\(for: 1\)", re.DOTALL)
            wait_for(lambda: news.search(self.home.log.read_text(), before), "the new configuration")

    def dialog(self, title):
        """Waits until the dialog of that title has the keyboard; what it is for a screen reader."""
        wait_for(lambda: output_of("xdotool", "getactivewindow", "getwindowname") == title, f"the dialog “{title}”")
        pid = int(output_of("xdotool", "getactivewindow", "getwindowpid"))
        return wait_to_see(lambda: windows(pid), "what it shows")[0]

    def prompt(self, title):
        """The same, until the name can be typed."""
        dialog = self.dialog(title)
        wait_to_see(lambda: [field for field in nodes(dialog, {"text"}) if selection_in(field)], "the suggested name")

    @staticmethod
    def is_called(window, is_wanted):
        """Waits until the title of a window is one of those wanted."""
        wait_for(lambda: is_wanted(output_of("xdotool", "getwindowname", window)), "another title")

    def activate(self, window):
        output_of("xdotool", "windowactivate", "--sync", window)

    def has_no_dialog(self):
        return not output_of("pgrep", "-x", "sprig-dialog")

    def picture(self, name, crop=without_empty_edges):
        super().picture(f"{os.environ['SPRIG_MANAGER']}-{name}", crop)


class WaylandScreen:
    """A desktop on a compositor, with a keyboard; for file managers that are used with it."""

    def __init__(self, desktop, environment):
        self.launch, self.end, self.output = desktop.launch, desktop.end, desktop.output
        self.environment = environment
        self.display = f"{environment['XDG_RUNTIME_DIR']}/{environment['WAYLAND_DISPLAY']}"
        # Without one that stays, menus close.
        self.keyboard = subprocess.Popen([need("wtype", "wtype"), "-s", str(1000 * DEADLINE)], env=environment,
                                         stderr=subprocess.DEVNULL)

    def stop(self):
        self.keyboard.kill()
        self.keyboard.wait()

    def press(self, *keys):
        subprocess.run(["wtype", *(word for key in keys for word in ("-k", key))], env=self.environment, check=True,
                       stderr=subprocess.DEVNULL)

    def click(self, _place, _button):
        """Nothing is clicked there, but a menu is opened by a key as well."""
        self.press("Menu")

    def said(self):
        """All that was asked of the compositor."""
        return self.output.read_text(errors="replace")


class FileManager:
    """A file manager that shows a folder; one of GTK 3 unless a class of its own says otherwise."""

    command = ()
    window_class = ""
    # Where in a row of the list a click is one on the item, from its left end.
    row_offset = 20
    row_roles = {"table cell"}
    # How far below the last row the background is.
    below_rows = 90
    # What an entry of a menu is that the next key is for.
    highlighted = "SELECTED"
    copied_as = "x-special/gnome-copied-files"
    key_into_submenu = "Right"
    # Kinds of views, the usual one first.
    views = ("list-view", "icon-view", "compact-view")
    # Whether a file that is shown has the keyboard's focus, too.
    keys_go_on_from_selection = True
    # Seconds after which no menu is on its way any more.
    PATIENCE = 4

    def __init__(self, desktop, folder):
        self.desktop = desktop
        self.process = desktop.launch(*(word.format(folder) for word in self.command))
        self.window = self.find_window()

    def find_window(self):
        window = wait_for(self._large_window, f"the window of {self.command[0]}")
        self.desktop.activate(window)
        return window

    @staticmethod
    def choose_view(desktop, view):
        """For file managers that are started from now on."""
        desktop.home.write(".config/glib-2.0/settings/keyfile", viewer_settings(view))

    def stop(self):
        self.desktop.end(self.process)

    @staticmethod
    def disables_rows():
        """Whether it shows disabled entries of menus as such."""
        return True

    def _x_windows(self):
        return self.desktop.areas("search", "--onlyvisible", "--class", self.window_class, "%@")

    def large_windows(self):
        return [window for window, place in self._x_windows().items() if place.width > 300]

    def _large_window(self):
        return next(reversed(self.large_windows()), None)

    def frames(self):
        return [window for window in windows(self.process.pid) if window.role == "frame"]

    def place(self, accessible):
        """Where it is on the screen."""
        return area(accessible)

    def settled_place(self, find, what):
        """Where what `find` finds is on the screen, once it is laid out and stays there."""
        def look():
            place = self.place(find())
            return place.width and place.height and place
        return settled(look, what, not_yet=(GLib.Error, LookupError, StopIteration))

    # The list of files.

    def rows(self, name=None):
        return [row for frame in self.frames() for row in nodes(frame, self.row_roles, name)
                if has(row, "SHOWING") and area(row).width > 0]

    def selected_rows(self):
        """The names of the selected rows of all windows."""
        return {row.name for row in self.rows() if has(row, "SELECTED")}

    def on(self, name):
        """Where a click is one on the item of that name."""
        place = self.settled_place(lambda: self.rows(name)[0], f"the row “{name}”")
        return place.x + min(place.width // 2, self.row_offset), place.y + place.height // 2

    def background(self):
        """Where a click is one on the background."""
        across, down = self.on("letter.txt")
        return across + 60, down + self.below_rows

    def shows(self, file):
        """Waits until the file is selected in a window."""
        wait_to_see(lambda: file.name in self.selected_rows(), f"{file.name} to be selected")

    def middle(self):
        """A place in the view that has no edges near."""
        place = self.desktop.area(self.window)
        return place.x + place.width * 6 // 10, place.y + place.height // 2

    def copies(self):
        """The URIs of what is copied where the keyboard is: of the files that are selected there."""
        self.desktop.press("ctrl+c")
        said = output_of("timeout", "2", "xclip", "-o", "-selection", "clipboard", "-t", self.copied_as)
        return [line for line in said.splitlines() if line.startswith("file:")]

    def is_scrolled_to_the_end(self):
        """Whether a view that has more than it can show shows the last of it."""
        bars = [bar for frame in self.frames() for bar in nodes(frame, {"scroll bar"}, closed=VIEWS)]
        limits = [[bar.get(limit, "Value") for limit in ("CurrentValue", "MaximumValue")] for bar in bars
                  if has(bar, "SHOWING")]
        return any(0 < limit <= 1.05 * value for value, limit in limits)

    def leave_folder(self):
        # A window manager would rather activate the dialog in front.
        output_of("xdotool", "windowfocus", "--sync", self.window)
        title = output_of("xdotool", "getwindowname", self.window)
        self.desktop.press("alt+Up")
        self.desktop.is_called(self.window, lambda now: now != title)

    # Menus.

    def _menus(self):
        """The open ones that stand in no other one."""
        return [window for window in windows(self.process.pid) if window.role == "window"]

    @staticmethod
    def _entries_in(menu):
        return [entry for entry in nodes(menu, ENTRIES) if has(entry, "SHOWING", "VISIBLE") and entry.name]

    def entries(self):
        """What open menus list."""
        return [entry for menu in self._menus() for entry in self._entries_in(menu)]

    def listed(self):
        return [entry.name for entry in self.entries()]

    def entry(self, name):
        return [entry for entry in self.entries() if entry.name == name][-1]

    def submenu(self, name):
        """What an open submenu lists."""
        def look():
            entry = self.entry(name)
            return [below.name for below in self._entries_in(entry) if below != entry]
        return wait_to_see(look, f"the submenu “{name}”")

    def open_menu(self, place, button=3):
        """Opens a menu that has Sprig. A file manager may put away a menu that has just changed: then once more."""
        clicked = 0

        def look():
            nonlocal clicked
            if time.monotonic() - clicked > self.PATIENCE and not self.has_menu():
                self.desktop.click(place, button)
                clicked = time.monotonic()
            return "Sprig" in self.listed()
        wait_to_see(look, "“Sprig” in the menu")

    def comes_to_list(self, place, *names, button=3):
        """Opens menus until Sprig's begins with these."""
        def offered():
            self.desktop.click(place, button)
            end = time.monotonic() + self.PATIENCE
            wait_to_see(lambda: self.entries() or time.monotonic() > end, "a menu")
            if "Sprig" in self.listed():
                self.pick("Sprig")
                if self.submenu("Sprig")[:len(names)] == list(names):
                    return True
            self.close_menus()
            return False
        wait_to_see(offered, f"a menu with {names}")

    def time_to_menu(self, place):
        """Seconds from the click to a menu, whatever is in it."""
        before = self._x_windows()
        begin = time.monotonic()
        self.desktop.click(place, button=3)
        wait_for(lambda: self._x_windows().keys() - before, "a menu")
        seconds = time.monotonic() - begin
        wait_to_see(self.entries, "what it lists")
        return seconds

    def has_menu(self):
        return bool(self.entries())

    def close_menus(self):
        def are_closed():
            if not self.has_menu():
                return True
            before = self.listed()
            self.desktop.press("Escape")
            wait_to_see(lambda: not self.has_menu() or self.listed() != before, "a menu to close")
            return False
        wait_to_see(are_closed, "the menus to close")

    def point(self, name):
        place = middle(self.settled_place(lambda: self.entry(name), f"“{name}” in the menu"))
        self.desktop.point(place)
        return place

    def pick(self, *names):
        """Goes through the open menu with the mouse."""
        for name in names:
            self.desktop.click(self.point(name))

    def highlighted_entry(self):
        return next((entry.name for entry in reversed(self.entries()) if has(entry, self.highlighted)), None)

    def _highlight(self, name):
        wait_to_see(lambda: name in self.listed(), f"“{name}” in the menu")
        for _ in range(60):
            before = self.highlighted_entry()
            if before == name:
                return
            # From the end, which Sprig is nearer to.
            self.desktop.press("Up")
            wait_to_see(lambda: self.highlighted_entry() != before, "another entry")
        raise AssertionError(f"“{name}” can't be reached")

    def enter_by_keys(self, *names):
        """Opens submenus of the open menu with the keyboard."""
        for name in names:
            self._highlight(name)
            self.desktop.press(self.key_into_submenu)

    def pick_by_keys(self, name):
        self._highlight(name)
        self.desktop.press("Return")


class Thunar(FileManager):
    command = ("thunar", "{}")
    window_class = "thunar"
    views = ("ThunarDetailsView", "ThunarIconView", "ThunarCompactView")

    @staticmethod
    def choose_view(desktop, view):
        output_of("xfconf-query", "--channel", "thunar", "--property", "/last-view", "--create", "--type", "string",
                  "--set", view)

    @staticmethod
    def disables_rows():
        version = re.search(r"[\d.]+", output_of("thunar", "--version"))[0]
        return [int(part) for part in version.split(".")] >= [4, 19, 3]


class Caja(FileManager):
    copied_as = "x-special/mate-copied-files"
    command = ("caja", "--no-desktop", "--browser", "{}")
    window_class = "caja"


class Nemo(FileManager):
    command = ("nemo", "{}")
    window_class = "nemo"
    # Right beside a name, a click is one on the background.
    row_offset = 4


class LabelledEntry(Accessible):
    """An entry of a menu whose name newer releases of GTK tell of its label only."""

    @property
    def name(self):
        return super().name or "".join(text_of(label) for label in self.related() if label.can("Text"))


class Nautilus(FileManager):
    """GNOME Files, of GTK 4: everything counts as showing there, and menus are pages of a window of their own."""

    command = ("nautilus", "--new-window", "{}")
    window_class = "nautilus"
    row_offset = 60
    highlighted = "FOCUSED"
    key_into_submenu = "Return"
    views = ("list-view", "icon-view")
    keys_go_on_from_selection = False
    # As older releases have it, and newer ones.
    SELECTED = {(224, 236, 251), (228, 228, 228)}
    MENU_BUTTON = {"GtkMenuButton", "Current Folder Menu"}

    def _parts(self, role):
        """What is in the windows, without a look into lists."""
        return (part for frame in self.frames() for part in nodes(frame, {role}, closed={"list", "table"}))

    def _popover(self):
        """The open menu and its X window; None while there is none."""
        sizes = {place[2:]: place for place in self._x_windows().values()}
        return next(((menu, window) for menu in self._parts("menu")
                     if (window := sizes.get(area(menu, WITHIN_WINDOW)[2:]))), None)

    def is_scrolled_to_the_end(self):
        """A screen reader gets neither scroll bars nor places, but the colour of what is selected is on the screen."""
        return sum(pixel in self.SELECTED for pixel in self.desktop.screenshot().convert("RGB").getdata()) > 1000

    def menu_button(self):
        """The button for the menu of the folder that is shown."""
        return next(button for button in self._parts("push button") if button.name in self.MENU_BUTTON)

    def _rows(self):
        return {next(nodes(row, {"label"}), row).name: row
                for table in self._parts("list") if table.name in {"GtkColumnListView", ""} for row in children(table)}

    def rows(self, name=None):
        return [row for label, row in self._rows().items() if name in (None, label)]

    def selected_rows(self):
        return {name for name, row in self._rows().items() if has(row, "SELECTED")}

    def on(self, name):
        """Newer releases of GTK tell rows higher than they are, by the margins around them."""
        across, down = super().on(name)
        return across, down + 11

    def place(self, accessible):
        if accessible.role == "menu item":
            if not (found := self._popover()):
                raise LookupError("the menu has gone")
            popover, window = found
            return area_in_gtk4(accessible, window, popover)
        return area_in_gtk4(accessible, self.desktop.area(self.window), self.frames()[0])

    def entries(self):
        """The page in sight is the one with what has the keyboard."""
        if not (found := self._popover()):
            return []
        stack = found[0]
        for _ in range(4):  # what scrolls them
            stack = children(stack)[0]
        pages = ([LabelledEntry(*entry) for entry in nodes(page, {"menu item"}, closed={"menu item"})]
                 for page in children(stack))
        return next((page for page in pages if any(has(entry, "FOCUSED") for entry in page)), [])

    def has_menu(self):
        return self._popover() is not None

    def close_menus(self):
        super().close_menus()
        # A screen reader misses a menu before the screen does, and the next one may get the same window.
        wait_for(lambda: self._x_windows().keys() == set(self.large_windows()), "the menus' windows to go")

    def submenu(self, name):
        wait_to_see(lambda: self.listed()[:1] == [name], f"the submenu “{name}”")
        return self.listed()[1:]


class Dolphin(FileManager):
    """Qt tells a screen reader of a menu when it opens, and of an entry when it gets the focus; it counts neither among
    what the program's windows hold. Entries that Dolphin has in other menus, too, never seem to be in this one."""

    command = ("dolphin", "--new-window", "{}")
    # Those of Qt 6 are items of a list.
    row_roles = {"table cell", "list item"}
    window_class = "dolphin"
    # Shows icons with their names below: what is not in the middle is the background.
    row_offset = 1000
    below_rows = 200

    def __init__(self, desktop, folder):
        self.menus = []
        self.focused = None
        self.listening = [on_change("showing", self._shown), on_change("focused", self._focused)]
        super().__init__(desktop, folder)

    def stop(self):
        for end in self.listening:
            end()
        super().stop()
        output_of("pkill", "-x", "dolphin")
        wait_for(lambda: not self._pids(), "the other windows to go")

    @staticmethod
    def _pids():
        """One for each window."""
        return output_of("pgrep", "-x", "dolphin").split()

    def frames(self):
        return [window for pid in self._pids() for window in windows(int(pid)) if window.role == "frame"]

    def _shown(self, accessible, is_now):
        if is_now and accessible.role == "popup menu":
            self.menus.append(accessible)

    def _focused(self, accessible, is_now):
        if is_now and accessible.role == "menu item":
            self.focused = accessible.name

    @property
    def bus_name(self):
        return f"org.kde.dolphin-{self.process.pid}"

    def leave_folder(self):
        self.desktop.call(self.bus_name, "/dolphin/Dolphin_1", "org.kde.KMainWindow", "activateAction", "go_up")
        self.desktop.is_called(self.window, lambda title: not title.startswith("demo"))

    def load_module(self):
        """Dolphin does with its first menu."""
        self.open_menu(self.on("inner"))
        self.close_menus()

    def tabs(self):
        return [tab.name for frame in self.frames() for tab in nodes(frame, {"page tab"})]

    def has_in_sight(self, name):
        """Whether most of the row is between the tool bar and the status bar."""
        (_, down), window = middle(self.place(self.rows(name)[0])), self.desktop.area(self.window)
        return window.y + 40 < down < window.y + window.height - 30

    def _menus(self):
        while GLib.MainContext.default().iteration(False):
            pass

        def is_open(menu):
            try:
                return has(menu, "SHOWING")
            except GLib.Error:
                return False  # It is gone.
        self.menus = [menu for menu in self.menus if is_open(menu)]
        return [menu for menu in self.menus if menu.parent.role != "menu item"]

    def has_menu(self):
        return bool(self._menus())

    def close_menus(self):
        super().close_menus()
        # Qt says so before the screen does, and a click on what is left of a menu opens no other one.
        wait_for(lambda: len(self.desktop.windows_of(self.process)) == 1, "the menus' windows to go")

    def highlighted_entry(self):
        self._menus()
        return self.focused


MANAGERS = {"thunar": Thunar, "caja": Caja, "nemo": Nemo, "nautilus": Nautilus, "dolphin": Dolphin}
