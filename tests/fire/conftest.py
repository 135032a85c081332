# SPDX-License-Identifier: GPL-3.0-or-later
"""How much fire there is, and what it is at."""

import os
import tempfile

import pytest
from sprigtest.terminal import TerminalHome

# 1 for the short form, 100 for the long one.
FIRE = int(os.environ.get("SPRIG_FIRE", "1"))


@pytest.fixture
def home():
    with tempfile.TemporaryDirectory(prefix="sprig-fire-") as root:
        yield TerminalHome(root)
