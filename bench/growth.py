# SPDX-License-Identifier: GPL-3.0-or-later
"""Measures by how much private memory a file manager grows, with Sprig's module or without, in changes of the selection,
opened menus, and saves of a configuration of 400 templates with a change of the selection after each. Prints the samples
as JSON, bytes: ten times what each tenth of the run added.

Runs where the tests of the file managers do, in session.sh.
"""

import itertools
import json
import os
import pathlib
import re
import time

from driving import MANAGERS, SprigDesktop
from sprigtest.home import template, throw_away_home
from sprigtest.waiting import output_of, settled

MANAGER = os.environ["SPRIG_MANAGER"]
WITH = os.environ["SPRIG_WITH"]
COUNT = 1000
TEMPLATES = 400
# With a screen reader, toolkits keep what they have shown.
ENVIRONMENT = {"G_MESSAGES_DEBUG": "Sprig", "NO_AT_BRIDGE": "1", "GTK_A11Y": "none", "QT_ACCESSIBILITY": "0"}


def private_memory(pid):
    said = pathlib.Path(f"/proc/{pid}/smaps_rollup").read_text()
    return 1024 * sum(int(size) for size in re.findall(r"Private_(?:Clean|Dirty): +(\d+)", said))


class Measurement:
    def __init__(self, desktop, manager):
        self.desktop = desktop
        self.manager = manager

    def queries(self):
        return self.desktop.output.read_bytes().count(b"asked for a menu")

    def memory(self):
        return settled(lambda: private_memory(self.manager.process.pid), "the memory", between=lambda: time.sleep(0.3))

    def growth(self, step):
        """Of each tenth of a run after the first steps, which bring what is loaded when it is needed."""
        sizes = []
        for tenth in range(11):
            for number in range(COUNT // 10):
                step(tenth * COUNT // 10 + number)
            sizes.append(self.memory())
        return [10 * (after - before) for before, after in itertools.pairwise(sizes)]

    def select(self, number):
        output_of("xdotool", "key", "--delay", "120", "Up" if number % 2 else "Down")

    @staticmethod
    def open(_):
        output_of("xdotool", "key", "--delay", "150", "Menu", "Escape")

    def save(self, number):
        """Every template gets another name, as far as the menu tells."""
        self.desktop.configure(*(template(f"Of {number % 100}, {index}", id=f"template-{index}",
                                          category=f"kind-{index % 20}") for index in range(TEMPLATES)))
        self.select(number)


def main():
    with throw_away_home() as home:
        desktop = SprigDesktop(home)
        for index in range(10):
            home.write(f"demo/{index}.txt", "x")
        desktop.environment |= ENVIRONMENT
        try:
            desktop.start()
            manager = MANAGERS[MANAGER](desktop, home.demo)
            desktop.click(manager.middle())
            desktop.press("ctrl+a")
            measurement = Measurement(desktop, manager)
            steps = measurement.select, measurement.open, measurement.save
            samples = {f"growth/{MANAGER}/{step.__name__}/{WITH}": measurement.growth(step) for step in steps}
            # Some ask on each change of the selection, the others for each menu that is opened.
            assert WITH == "without" or measurement.queries() > COUNT, "Sprig's module was hardly asked for menus"
            print(json.dumps(samples))
            manager.stop()
        finally:
            desktop.stop()


main()
