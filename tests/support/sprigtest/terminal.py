# SPDX-License-Identifier: GPL-3.0-or-later
"""Sprig at a terminal."""

import os
import shutil

import pexpect

from sprigtest.home import NOBODY, Home
from sprigtest.waiting import DEADLINE


class TerminalHome(Home):
    def spawn(self, *command, cwd=None, **environment):
        """Runs a command at a terminal of 24 lines and 80 columns."""
        return pexpect.spawn(str(command[0]), [str(argument) for argument in command[1:]], cwd=str(cwd or self.demo),
                             env=self.env(environment), encoding="utf-8", timeout=DEADLINE, dimensions=(24, 80))

    def sprig(self, *arguments, **options):
        """Runs Sprig at a terminal, its standard output in a file."""
        command = 'trap : INT HUP; "$@" > "$HOME/.out"; echo "status=$?"; stty -a'
        return Session(self, self.spawn("/bin/sh", "-c", command, "sh", self.program, *arguments, **options))

    def printed(self):
        return (self.path / ".out").read_text()

    def run_as_ordinary_user(self, *arguments):
        """As `run`, without the rights of root."""
        if os.getuid() != 0:
            return self.run(*arguments)
        program = self.path / "sprig"
        shutil.copy(self.program, program)
        return self.run_command("setpriv", f"--reuid={NOBODY}", f"--regid={NOBODY}", "--clear-groups", program, *arguments)


class Session:
    """Sprig at a terminal, and the user in front of it."""

    def __init__(self, home, child):
        self.home = home
        self.child = child
        self.child.delaybeforesend = None

    def sees(self, *texts):
        for text in texts:
            self.child.expect_exact(text)
        return self

    def types(self, text):
        self.child.send(text)
        return self

    def at_menu(self):
        return self.sees("leave.", "> ")

    def ends(self, status):
        """The exit status, with the terminal as it was before."""
        self.sees(f"status={status}\r\n", " icanon", " echo ")
        self.child.expect(pexpect.EOF)
        return self.home.printed()
