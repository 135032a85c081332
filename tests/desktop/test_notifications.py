# SPDX-License-Identifier: GPL-3.0-or-later
"""The notification of a creation and its button, with a service played by the test, and with a real one."""

import functools
import pathlib
import subprocess

import pytest
from gi.repository import GLib
from sprigtest.bus import bus_interface, wait_until
from sprigtest.home import need, template

NAME, PATH = "org.freedesktop.Notifications", "/org/freedesktop/Notifications"
SERVICE = bus_interface(NAME, {"GetCapabilities": ["", ["as"]], "CloseNotification": ["u"],
                               "Notify": [[*"susss", "as", "a{sv}", "i"], "u"]})
RECORDING = bus_interface("com.kestrel.Sprig.FileManager1", {"RecordCreation": ["s", "b"]})
CONTROL = "org.dunstproject.cmd0"
ID = 7


class Notifications:
    """A notification service that notes what it is asked to show."""

    def __init__(self, desktop, *capabilities):
        self.client = desktop.manager(shows_items=False).own(NAME)
        self.capabilities = capabilities
        self.asked = 0
        self.shown = []
        self.closed = []
        self.client.connection.register_object(PATH, SERVICE, self._called)

    def _called(self, _connection, _sender, _path, _interface, method, parameters, invocation):
        arguments = parameters.unpack()
        if method == "GetCapabilities":
            self.asked += 1
            invocation.return_value(GLib.Variant("(as)", (self.capabilities,)))
        elif method == "Notify":
            self.shown.append(arguments)
            invocation.return_value(GLib.Variant("(u)", (ID,)))
        else:
            self.closed.append(arguments[0])
            invocation.return_value(None)

    def signals(self, name, signature, *arguments):
        self.client.connection.emit_signal(None, PATH, NAME, name, GLib.Variant(signature, arguments))

    def presses(self, key, number=ID):
        self.signals("ActionInvoked", "(us)", number, key)

    def says(self, count=1):
        """Title, text and buttons of the last of so many notifications."""
        wait_until(lambda: len(self.shown) == count)
        return self.shown[-1][3:6]


class Created:
    """A pick that made a file, in a session with a notification service."""

    def __init__(self, desktop, name="Note", capabilities=("actions", "body-markup"), **settings):
        self.desktop = desktop
        self.service = Notifications(desktop, *capabilities)
        desktop.home.configure(template("Note", filenamePattern=name, extension=""), defaultBehavior="never",
                               **settings)
        self.manager = desktop.manager()
        self.file = desktop.home.demo / name

    def pick(self):
        self.manager.pick("template:note", self.desktop.home.demo)
        wait_until(lambda: self.manager.shown)
        return self

    def journal(self):
        return (self.desktop.home.path / ".local/state/sprig/creations").read_text()

    def trash(self):
        return self.desktop.home.path / ".local/share/Trash"


def test_the_button_of_the_notification_takes_the_file_back(desktop):
    created = Created(desktop).pick()
    assert created.service.says() == ("Created “Note”", "", ["undo-1", "Undo"])
    application, replaced, _, _, _, _, hints, timeout = created.service.shown[0]
    assert (application, replaced, timeout) == ("Sprig", 0, -1)
    assert hints == {"transient": True, "urgency": 0, "desktop-entry": "com.kestrel.Sprig"}
    for key, number in (("default", ID), ("undo-1", ID + 1), ("undo-2", ID), ("", ID)):
        created.service.presses(key, number)
    created.manager.property("Revision")
    assert created.file.exists() and created.journal()
    created.pick()
    assert created.service.says(2)[2] == ["undo-2", "Undo"] and created.service.shown[1][1] == ID
    # The first was pressed just before the second took its place.
    created.service.presses("undo-1")
    wait_until(lambda: not created.file.exists() and "Note 2" in created.journal().splitlines()[0])
    created.service.presses("undo-1")
    created.service.presses("undo-2")
    wait_until(lambda: list(desktop.home.demo.iterdir()) == [] and created.journal() == "")
    assert sorted(file.name for file in (created.trash() / "files").iterdir()) == ["Note", "Note 2"]
    assert len(created.service.shown) == 2


@pytest.mark.parametrize("name, said", [("Note", "“Note”"), ("R&D <b>", "“R&amp;D &lt;b&gt;”")])
def test_a_file_that_was_touched_stays_and_the_notification_says_why(desktop, name, said):
    created = Created(desktop, name).pick()
    created.service.says()
    created.file.write_text("mine")
    created.service.presses("undo-1")
    assert created.service.says(2) == ("Nothing was undone", f"{said} has been changed since it was created.", [])
    assert created.file.read_text() == "mine"


HIDDEN = "It is hidden, as its name begins with a dot."


@pytest.mark.parametrize("name, recorded, said", [
    ("Note", False, ("Created “Note”", "", ["undo-1", "Undo"])),
    (".env", False, ("Created “.env”", HIDDEN, ["undo-1", "Undo"])),
    ("Note", True, None),
    (".env", True, ("Created “.env”", HIDDEN, [])),
])
def test_a_file_manager_with_an_undo_of_its_own_needs_no_button(desktop, name, recorded, said):
    created = Created(desktop, name)
    asked = []

    def record(*call):
        asked.append(call[5].unpack()[0])
        call[6].return_value(GLib.Variant("(b)", (recorded,)))
    created.manager.connection.register_object("/com/kestrel/Sprig/FileManager", RECORDING, record)
    created.pick()
    assert asked == [GLib.filename_to_uri(str(created.file))]
    if said:
        assert created.service.says() == said
    created.manager.property("Revision")
    assert len(created.service.shown) == bool(said)


@pytest.mark.parametrize("capabilities, settings, asked", [
    (["body"], {}, 1), (["actions"], {"notificationsEnabled": False}, 0),
])
def test_nothing_is_shown_without_buttons_or_when_it_is_not_wanted(desktop, capabilities, settings, asked):
    created = Created(desktop, "Note", capabilities, **settings).pick()
    wait_until(lambda: created.service.asked >= asked)
    created.manager.property("Revision")
    assert (created.service.asked, created.service.shown) == (asked, [])
    assert created.journal()


@pytest.mark.parametrize("is_open", [True, False])
def test_the_extension_withdraws_its_notification_when_it_leaves(scripted, is_open):
    created = Created(scripted(100)).pick()
    created.service.says()
    if not is_open:
        created.service.signals("NotificationClosed", "(uu)", ID, 2)
        created.manager.property("Revision")
    process = created.manager.extension_process()
    created.manager.leaves()
    wait_until(lambda: not pathlib.Path("/proc", str(process)).exists())
    created.service.client.bus("GetId")
    wait_until(lambda: created.service.closed == ([ID] if is_open else []))


def test_another_service_is_not_asked_to_replace_what_it_has_not_shown(desktop):
    created = Created(desktop).pick()
    created.service.says()
    created.service.client.leaves()
    created.service = Notifications(desktop, "actions")
    created.pick()
    created.service.says()
    assert created.service.shown[0][1] == 0


@pytest.fixture
def dunst(desktop, tmp_path):
    """A real notification service, on a screen of its own."""
    environment = {**desktop.home.env({}), "DBUS_SESSION_BUS_ADDRESS": desktop.address, "XDG_CONFIG_DIRS": str(tmp_path)}
    screen = subprocess.Popen([need("Xvfb", "xvfb"), "-displayfd", "1", "-nolisten", "tcp"], stdout=subprocess.PIPE,
                              stderr=subprocess.DEVNULL, text=True)
    environment["DISPLAY"] = ":" + screen.stdout.readline().strip()
    daemon = subprocess.Popen([need("dunst", "dunst")], env=environment, stderr=subprocess.DEVNULL)
    manager = desktop.manager()
    wait_until(lambda: manager.bus("NameHasOwner", NAME))

    yield functools.partial(manager.call, interface=CONTROL, to=(NAME, PATH))
    daemon.terminate()
    daemon.wait()
    screen.terminate()
    screen.wait()


def test_a_real_notification_service_offers_the_undo(desktop, dunst):
    desktop.home.configure(template("Note"), defaultBehavior="never")
    manager = desktop.manager()
    file = desktop.home.demo / "Note.txt"
    manager.pick("template:note", desktop.home.demo)
    wait_until(lambda: dunst("Get", "(ss)", CONTROL, "displayedLength", interface="org.freedesktop.DBus.Properties")[0])
    assert file.exists()
    dunst("NotificationAction", "(u)", 0)
    wait_until(lambda: not file.exists())
    assert (desktop.home.path / ".local/share/Trash/files/Note.txt").read_text() == "Note in demo\n"
