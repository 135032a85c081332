# SPDX-License-Identifier: GPL-3.0-or-later
"""A Wayland compositor without a screen."""

import contextlib
import os
import pathlib
import subprocess
import tempfile

from sprigtest.home import need


@contextlib.contextmanager
def compositor():
    """The environment of programs under it, which say what they ask of it."""
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
                       "GSETTINGS_BACKEND": "memory", "ASAN_OPTIONS": "detect_leaks=0", "WAYLAND_DEBUG": "client"}
            finally:
                process.terminate()
