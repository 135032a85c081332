# SPDX-License-Identifier: GPL-3.0-or-later
"""How much private memory a file manager comes to hold, as a program for session.sh.

Usage: manager_memory.py MANAGER COUNT. Prints as JSON by how many kB the manager grows in so many changes of the
selection, opened menus, and saves of a configuration of 400 templates with a change of the selection after each; and how
often Sprig's module was asked for a menu meanwhile.
"""

import json
import pathlib
import re
import statistics
import sys
import time

TESTS = pathlib.Path(__file__).parents[1] / "tests"
sys.path[:0] = [str(TESTS / name) for name in ("support", "filemanagers")]

from driving import MANAGERS, SprigDesktop
from sprigtest.home import template, throw_away_home
from sprigtest.waiting import output_of, settled

TEMPLATES = 400
# With a screen reader, toolkits keep what they have shown.
ENVIRONMENT = {"G_MESSAGES_DEBUG": "Sprig", "NO_AT_BRIDGE": "1", "GTK_A11Y": "none", "QT_ACCESSIBILITY": "0"}


def private_kilobytes(pid):
    said = pathlib.Path(f"/proc/{pid}/smaps_rollup").read_text()
    return sum(int(size) for size in re.findall(r"Private_(?:Clean|Dirty): +(\d+)", said))


class Measurement:
    def __init__(self, desktop, manager, tenth):
        self.desktop = desktop
        self.manager = manager
        self.tenth = tenth

    def queries(self):
        return self.desktop.output.read_bytes().count(b"asked for a menu")

    def memory(self):
        return settled(lambda: private_kilobytes(self.manager.process.pid), "the memory",
                       between=lambda: time.sleep(0.3))

    def growth(self, step):
        """As it is in most tenths of the run: what windows are drawn on comes and goes, 10 MB at once."""
        sizes = []
        for count in range(11):
            if count == 1:  # the first ones bring what is loaded when it is needed
                asked = self.queries()
            for number in range(self.tenth):
                step(count * self.tenth + number)
            sizes.append(self.memory())
        grown = [after - before for before, after in zip(sizes, sizes[1:])]
        return {"kB": 10 * statistics.median(grown), "queries": self.queries() - asked, "tenths": grown}

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
            manager = MANAGERS[sys.argv[1]](desktop, home.demo)
            desktop.click(manager.middle())
            desktop.press("ctrl+a")
            measurement = Measurement(desktop, manager, int(sys.argv[2]) // 10)
            steps = measurement.select, measurement.open, measurement.save
            print(json.dumps({step.__name__: measurement.growth(step) for step in steps}))
            manager.stop()
        finally:
            desktop.stop()


main()
