# SPDX-License-Identifier: GPL-3.0-or-later
"""What Sprig's module costs a file manager while the selection and the configuration change all the time."""

import json
import os
import pathlib
import subprocess

from conftest import FIRE

ROOT = pathlib.Path(__file__).parents[2]
MANAGER = os.environ["SPRIG_MANAGER"]
COUNT = 10 * FIRE


def growth(modules):
    """What manager_memory.py tells, with the modules of a folder in the place of those that are installed."""
    result = subprocess.run(
        [ROOT / "tests/filemanagers/session.sh", modules, os.environ["SPRIG_MODULES_FOLDER"], "/usr/bin/python3", "-B",
         ROOT / "bench/manager_memory.py", MANAGER, str(COUNT)], stdout=subprocess.PIPE, check=True)
    return json.loads(result.stdout)


def test_the_file_manager_grows_no_more_than_without_sprig(tmp_path):
    without, with_sprig = growth(tmp_path), growth(os.environ["SPRIG_MODULES"])
    for what, grown in with_sprig.items():
        print(f"{MANAGER}, {COUNT} × {what}: {without[what]['kB']:.0f} kB without Sprig, {grown['kB']:.0f} kB with it, which"
              f" was asked for {grown['queries']} menus; by tenths {without[what]['tenths']} and {grown['tenths']}")
    for what, grown in with_sprig.items():
        assert grown["kB"] - without[what]["kB"] < 2000
    # Some ask on each change of the selection, the others for each menu that is opened.
    assert max(grown["queries"] for grown in with_sprig.values()) > COUNT * 9 // 10
