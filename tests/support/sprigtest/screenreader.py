# SPDX-License-Identifier: GPL-3.0-or-later
"""What a screen reader gets of the windows on the screen.

It is asked for over the bus, each time anew: the usual library keeps what it was told, and has crashed on windows that
had gone. Of that library, only the names of roles and states are used."""

import collections
import contextlib
import functools

import gi
from sprigtest.waiting import wait_for

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, Gio, GLib

WITHIN_WINDOW = 1  # the other origin that can be asked for, the screen, is one that GTK 4 doesn't know
PATIENCE = 5000  # milliseconds
MOST_CHILDREN = 300
NOTHING = "/org/a11y/atspi/null"
REGISTRY, ROOT = "org.a11y.atspi.Registry", "/org/a11y/atspi/accessible/root"

Area = collections.namedtuple("Area", "x y width height")

# What is looked at may go in that moment.
wait_to_see = functools.partial(wait_for, not_yet=GLib.Error)


@functools.cache
def bus():
    session = Gio.bus_get_sync(Gio.BusType.SESSION)
    address, = session.call_sync("org.a11y.Bus", "/org/a11y/bus", "org.a11y.Bus", "GetAddress", None, None,
                                 Gio.DBusCallFlags.NONE, -1)
    kind = Gio.DBusConnectionFlags
    return Gio.DBusConnection.new_for_address_sync(address, kind.AUTHENTICATION_CLIENT | kind.MESSAGE_BUS_CONNECTION)


class Accessible(collections.namedtuple("Accessible", "owner path")):
    """Something in a window. What is asked of it raises GLib.Error once it has gone."""

    def call(self, interface, method, signature="()", *arguments):
        return bus().call_sync(self.owner, self.path, interface, method, GLib.Variant(signature, arguments), None,
                               Gio.DBusCallFlags.NONE, PATIENCE).unpack()

    def ask(self, interface, method, *arguments):
        """The only value of the answer."""
        return self.call(f"org.a11y.atspi.{interface}", method, *arguments)[0]

    def get(self, name, interface="Accessible"):
        return self.call("org.freedesktop.DBus.Properties", "Get", "(ss)", f"org.a11y.atspi.{interface}", name)[0]

    def can(self, interface):
        return f"org.a11y.atspi.{interface}" in self.ask("Accessible", "GetInterfaces")

    @property
    def role(self):
        name = Atspi.role_get_name(Atspi.Role(self.ask("Accessible", "GetRole")))
        return "push button" if name == "button" else name  # as newer releases call it

    @property
    def name(self):
        return self.get("Name")

    @property
    def parent(self):
        return Accessible(*self.get("Parent"))

    def related(self):
        """What it is related to, whatever the relations are."""
        return [Accessible(*target) for _, targets in self.ask("Accessible", "GetRelationSet") for target in targets]


def children(accessible):
    found = accessible.ask("Accessible", "GetChildren")[:MOST_CHILDREN]
    return [Accessible(*child) for child in found if child[1] != NOTHING]


def nodes(accessible, roles=None, name=None, closed=()):
    """The accessible object and all below it, or those of the roles and the name; without a look into what has a role
    that is `closed`."""
    role = accessible.role if roles or closed else None
    if roles is None or role in roles and name in (None, accessible.name):
        yield accessible
    for child in children(accessible) if role not in closed else ():
        yield from nodes(child, roles, name, closed)


def windows(pid):
    """The windows of a process."""
    daemon = Accessible("org.freedesktop.DBus", "/org/freedesktop/DBus")
    return [window for application in children(Accessible(REGISTRY, ROOT))
            if daemon.call(daemon.owner, "GetConnectionUnixProcessID", "(s)", application.owner) == (pid,)
            for window in children(application)]


def on_change(state, act):
    """Has `act` called with what got the state, or lost it, and with whether it has it; while the main context runs.
    Returns what ends that."""
    event = "(s)", f"object:state-changed:{state}"
    registry = Accessible(REGISTRY, "/org/a11y/atspi/registry")
    registry.call(REGISTRY, "RegisterEvent", *event)

    def changed(_bus, owner, path, _interface, _signal, news):
        with contextlib.suppress(GLib.Error):  # It may have gone.
            act(Accessible(owner, path), bool(news[1]))
    subscription = bus().signal_subscribe(None, "org.a11y.atspi.Event.Object", "StateChanged", None, state,
                                          Gio.DBusSignalFlags.NONE, changed)

    def end():
        bus().signal_unsubscribe(subscription)
        registry.call(REGISTRY, "DeregisterEvent", *event)
    return end


def has(accessible, *states):
    low, high = accessible.ask("Accessible", "GetState")
    found = low | high << 32
    return all(found >> getattr(Atspi.StateType, state) & 1 for state in states)


def area(accessible, origin=0):
    return Area(*accessible.ask("Component", "GetExtents", "(u)", origin))


def area_in_gtk4(accessible, window, frame):
    """Where something is on the screen that is in a window of GTK 4: that tells places within the window's content,
    the `frame`, which what is drawn around it, the shadow for one, moves from the corner of the X `window`."""
    inner, place = area(frame, WITHIN_WINDOW), area(accessible, WITHIN_WINDOW)
    return place._replace(x=window.x + (window.width - inner.width) // 2 + place.x - inner.x,
                          y=window.y + (window.height - inner.height) // 2 + place.y - inner.y)


def middle(place):
    return place.x + place.width // 2, place.y + place.height // 2


def text_of(accessible):
    return accessible.ask("Text", "GetText", "(ii)", 0, accessible.get("CharacterCount", "Text"))


def selection_in(field):
    """Where what is selected in a text field begins and ends, in characters; None while nothing is."""
    try:
        return field.call("org.a11y.atspi.Text", "GetSelection", "(i)", 0)
    except GLib.Error:
        return None
