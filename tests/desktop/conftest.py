# SPDX-License-Identifier: GPL-3.0-or-later
"""The extension on a bus and in a home folder of its own."""

import os

import pytest
from sprigtest.bus import Desktop
from sprigtest.home import throw_away_home

PROGRAM = os.environ["SPRIG_PROGRAM"]


@pytest.fixture
def home():
    with throw_away_home() as result:
        yield result


@pytest.fixture
def start(home):
    """Makes a desktop."""
    sessions = []

    def make(command=PROGRAM, **options):
        sessions.append(Desktop(home, command, **options))
        return sessions[-1]
    yield make
    for session in sessions:
        session.ends()


@pytest.fixture
def desktop(start):
    """With the extension as it is delivered."""
    return start()


@pytest.fixture
def manager(desktop):
    """A file manager on it."""
    return desktop.manager()


@pytest.fixture
def apart(start):
    """With an extension that has mounts of its own."""
    return start(f"/usr/bin/unshare --user --map-current-user --mount {PROGRAM}", program=PROGRAM)


@pytest.fixture
def scripted(start):
    """Makes a desktop with a scripted user and an extension that leaves after some milliseconds."""
    return lambda idle_time: start(os.environ["SPRIG_SCRIPTED"], SPRIG_IDLE_TIME=str(idle_time))
