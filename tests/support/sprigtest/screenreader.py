"""What a screen reader gets of the windows on the screen."""

import collections
import functools
import time

import gi
from gi.repository import GLib

from sprigtest.waiting import wait_for

gi.require_version("Atspi", "2.0")

WITHIN_WINDOW = 1  # the other origin that can be asked for, the screen, is one that GTK 4 doesn't know

Area = collections.namedtuple("Area", "x y width height")

# What is looked at may go in that moment.
wait_to_see = functools.partial(wait_for, not_yet=GLib.Error)


def atspi():
    """To be asked for only when the screen is there."""
    from gi.repository import Atspi
    return Atspi


def children(accessible):
    found = (accessible.get_child_at_index(index) for index in range(min(accessible.get_child_count(), 300)))
    return [child for child in found if child]


def nodes(accessible, roles=None, name=None):
    """The accessible object and all below it, or those of the roles and the name."""
    if roles is None or accessible.get_role_name() in roles and name in (None, accessible.get_name()):
        yield accessible
    for child in children(accessible):
        yield from nodes(child, roles, name)


class Memory:
    """What was read is remembered, and news come in by themselves, but not all of them: so not for long."""

    LIMIT = 1  # second
    begin = 0

    @classmethod
    def refresh(cls, application):
        while GLib.MainContext.default().iteration(False):
            pass
        if time.monotonic() - cls.begin > cls.LIMIT:
            application.clear_cache()
            cls.begin = time.monotonic()


def windows(pid):
    """The windows of a process."""
    applications = [found for found in children(atspi().get_desktop(0)) if found.get_process_id() == pid]
    for application in applications:
        Memory.refresh(application)
    return [window for application in applications for window in children(application)]


def has(accessible, *states):
    found = accessible.get_state_set()
    return all(found.contains(getattr(atspi().StateType, state)) for state in states)


def area(accessible, origin=0):
    place = atspi().Component.get_extents(accessible, origin)
    return Area(place.x, place.y, place.width, place.height)


def area_in_gtk4(accessible, window, frame):
    """Where something is on the screen that is in a window of GTK 4: that tells places within the window's content,
    the `frame`, which what is drawn around it, the shadow for one, moves from the corner of the X `window`."""
    inner, place = area(frame, WITHIN_WINDOW), area(accessible, WITHIN_WINDOW)
    return place._replace(x=window.x + (window.width - inner.width) // 2 + place.x - inner.x,
                          y=window.y + (window.height - inner.height) // 2 + place.y - inner.y)


def middle(place):
    return place.x + place.width // 2, place.y + place.height // 2


def selection_in(field):
    """Where what is selected in a text field begins and ends, in characters; None while nothing is."""
    try:
        selection = field.get_text_iface().get_selection(0)
    except GLib.Error:
        return None
    return selection.start_offset, selection.end_offset
