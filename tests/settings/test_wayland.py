# SPDX-License-Identifier: GPL-3.0-or-later
"""The settings under a Wayland compositor, where only the token of a click lets a window take the focus."""

import os
import signal
import subprocess

import pytest
from conftest import PROGRAMS
from sprigtest.waiting import DEADLINE
from sprigtest.wayland import compositor

SETTINGS = str(PROGRAMS / "sprig-settings")
BY_THE_BUS = f"""{SETTINGS} --gapplication-service &
until gdbus call --session -d com.kestrel.Sprig -o /com/kestrel/Sprig -m org.freedesktop.Application.Open \\
  "['sprig://settings']" "{{'desktop-startup-id': <'the-clicks'>}}"; do :; done 2>&-
wait"""
# When the window is there.
BY_ANOTHER_START = f"""{SETTINGS} 2>&1 | tee /dev/stderr |
{{ grep -q -m 1 '[.]ack_configure('; XDG_ACTIVATION_TOKEN=the-clicks {SETTINGS}; exec cat; }}"""


@pytest.mark.parametrize("command, token", [([SETTINGS, "sprig://settings"], "the-clicks"), (["sh", "-c", BY_THE_BUS], ""),
                                            (["sh", "-c", BY_ANOTHER_START], "")],
                         ids=["started", "by the bus", "by another start"])
def test_the_token_of_the_click_gives_the_window_the_focus(command, token):
    with compositor() as environment:
        run = subprocess.Popen(["timeout", str(DEADLINE), "dbus-run-session", *command], text=True, start_new_session=True,
                               stdout=subprocess.DEVNULL, stderr=subprocess.PIPE,
                               env={**environment, "XDG_ACTIVATION_TOKEN": token})
        try:
            assert any('.activate("the-clicks", ' in request for request in run.stderr)
        finally:
            os.killpg(run.pid, signal.SIGKILL)
            run.wait()
