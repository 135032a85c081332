# SPDX-License-Identifier: GPL-3.0-or-later
"""The dialog under a Wayland compositor, where only the token of a click lets a window take the focus."""

import json
import os
import pathlib
import subprocess
import tempfile

import pytest
from sprigtest.home import need
from sprigtest.waiting import DEADLINE


@pytest.fixture
def compositor():
    """The environment of programs under a compositor without a screen."""
    with tempfile.TemporaryDirectory(prefix="sprig-wayland-") as folder:
        environment = {"XDG_RUNTIME_DIR": folder, "HOME": folder, "PATH": os.environ["PATH"], "LIBSEAT_BACKEND": "noop",
                       "WLR_BACKENDS": "headless", "WLR_RENDERER": "pixman", "WLR_LIBINPUT_NO_DEVICES": "1"}
        (pathlib.Path(folder) / "config").write_text("exec echo started\n")
        # It refuses to run as root.
        ordinary_user = ["unshare", "--user", "--map-user=1000", "--map-group=1000"]
        command = [*ordinary_user, need("sway", "sway"), "-c", f"{folder}/config"]
        with subprocess.Popen(command, env=environment, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL) as process:
            try:
                assert process.stdout.readline() == b"started\n"
                display = next(path.name for path in pathlib.Path(folder).glob("wayland-*") if path.suffix != ".lock")
                yield {**environment, "WAYLAND_DISPLAY": display, "GDK_BACKEND": "wayland", "GTK_A11Y": "none",
                       "GSETTINGS_BACKEND": "memory", "ASAN_OPTIONS": "detect_leaks=0"}
            finally:
                process.terminate()


def test_the_token_of_the_click_gives_the_window_the_focus(compositor):
    show = {"command": "show", "title": "New File", "text": "", "buttons": [], "activationToken": "the-clicks",
            "parentWindow": "wayland:the-managers"}
    command = ["timeout", str(DEADLINE), os.environ["SPRIG_DIALOG"]]
    dialog = subprocess.Popen(command, env={**compositor, "WAYLAND_DEBUG": "client"}, text=True,
                              stdin=subprocess.PIPE, stdout=subprocess.DEVNULL, stderr=subprocess.PIPE)
    print(json.dumps(show), file=dialog.stdin, flush=True)
    missing = {'.activate("the-clicks", ', ', "the-managers")', ".set_parent_of(", '.set_app_id("com.kestrel.Sprig")'}
    for request in dialog.stderr:
        missing -= {text for text in missing if text in request}
        if not missing:
            break
    dialog.communicate()
    assert not missing and dialog.returncode == 0
