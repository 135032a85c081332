# SPDX-License-Identifier: GPL-3.0-or-later
"""Sprig at a terminal, in a throw-away home for every test."""

import pytest
from sprigtest.home import throw_away_home
from sprigtest.terminal import TerminalHome


@pytest.fixture
def home():
    with throw_away_home(TerminalHome) as result:
        yield result
