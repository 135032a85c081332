# SPDX-License-Identifier: GPL-3.0-or-later
"""The extension on a bus and in a home folder of its own."""

import os

import pytest
from sprigtest.bus import Desktop
from sprigtest.home import throw_away_home


@pytest.fixture
def home():
    with throw_away_home() as result:
        yield result


@pytest.fixture
def desktop(home):
    """With the extension as it is delivered."""
    session = Desktop(home, os.environ["SPRIG_PROGRAM"])
    yield session
    session.ends()


@pytest.fixture
def scripted(home):
    """Makes a desktop with a scripted user and an extension that leaves after some milliseconds."""
    sessions = []

    def make(idle_time):
        sessions.append(Desktop(home, os.environ["SPRIG_SCRIPTED"], SPRIG_IDLE_TIME=str(idle_time)))
        return sessions[-1]

    yield make
    for session in sessions:
        session.ends()
