# SPDX-License-Identifier: GPL-3.0-or-later
"""Shows Sprig in a file manager on the display that is there, with a home folder that is thrown away afterwards.

Usage: session.sh MODULES SYSTEM-FOLDER show.py MANAGER
"""

import os
import pathlib
import sys
import tempfile

sys.path.insert(0, str(pathlib.Path(__file__).parents[1] / "support"))

from driving import MANAGERS, SprigDesktop
from sprigtest.home import Home

SHOWN = 'Showing {} in {}; everything in it goes when its window is closed.'


def main():
    command = MANAGERS[sys.argv[1]].command
    with tempfile.TemporaryDirectory(prefix="sprig-desktop-") as root:
        home = Home(root)
        home.write("demo/letter.txt", "Dear reader,\n")
        desktop = SprigDesktop(home)
        desktop.environment |= {name: os.environ[name] for name in ("DISPLAY", "XAUTHORITY") if name in os.environ}
        desktop.start_bus()
        print(SHOWN.format(home.demo, command[0]), flush=True)
        desktop.launch(*(word.format(home.demo) for word in command)).wait()
        desktop.stop()


main()
