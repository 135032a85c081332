# SPDX-License-Identifier: GPL-3.0-or-later
"""The dialog under a Wayland compositor, where only the token of a click lets a window take the focus."""

import json
import os
import subprocess

import pytest
from sprigtest.waiting import DEADLINE
from sprigtest.wayland import compositor


@pytest.fixture(name="environment")
def start_compositor():
    with compositor() as environment:
        yield environment


def test_the_token_of_the_click_gives_the_window_the_focus(environment):
    show = {"command": "show", "title": "New File", "text": "", "buttons": [], "activationToken": "the-clicks",
            "parentWindow": "wayland:the-managers"}
    command = ["timeout", str(DEADLINE), os.environ["SPRIG_DIALOG"]]
    dialog = subprocess.Popen(command, env=environment, text=True,
                              stdin=subprocess.PIPE, stdout=subprocess.DEVNULL, stderr=subprocess.PIPE)
    print(json.dumps(show), file=dialog.stdin, flush=True)
    missing = {'.activate("the-clicks", ', ', "the-managers")', ".set_parent_of(", '.set_app_id("com.kestrel.Sprig")'}
    for request in dialog.stderr:
        missing -= {text for text in missing if text in request}
        if not missing:
            break
    dialog.communicate()
    assert not missing and dialog.returncode == 0
