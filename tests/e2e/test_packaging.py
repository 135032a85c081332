# SPDX-License-Identifier: GPL-3.0-or-later
"""What comes with the program: completions for shells, the manual page."""

import re
import subprocess

import pytest

from sprigtest.home import SOURCE, need, template

COMPLETIONS = SOURCE / "packaging/completions"
MANUALS = SOURCE / "packaging/man"
HARD = "R&D \"plan\" of $HOME, `Ann's`"
SHELLS = {
    "bash": (["--norc", "--noprofile", "-i"], f"source {COMPLETIONS}/sprig.bash"),
    "zsh": (["-f", "-i"], f"fpath=({COMPLETIONS} $fpath); autoload -Uz compinit; compinit -u -d $HOME/.zcompdump"),
    "fish": (["--no-config", "-i"], f"source {COMPLETIONS}/sprig.fish"),
}


COMPLETED = {
    "sprig new Meet": ["new", "Meeting Notes"],
    "sprig new 'Meet": ["new", "Meeting Notes"],
    "sprig new Meeting\\ N": ["new", "Meeting Notes"],
    "sprig new R": ["new", HARD],
    "sprig new \"R": ["new", HARD],
    "sprig new 'R": ["new", HARD],
    "sprig new Report --in fold": ["new", "Report", "--in", "folder of mine"],
    "sprig new --in . Meet": ["new", "--in", ".", "Meeting Notes"],
    "sprig new --in=fold": ["new", "--in=folder of mine"],
    "sprig -v new Meet": ["-v", "new", "Meeting Notes"],
    "sprig new Report Name --verb": ["new", "Report", "Name", "--verbose"],
    "sprig conf": ["config"],
    "sprig config ini": ["config", "init"],
    "sprig undo --l": ["undo", "--list"],
    "sprig config check conf": ["config", "check", "config file.json"],
    "sprig list --js": ["list", "--json"],
    "sprig templ": ["template"],
    "sprig template mo": ["template", "move"],
    "sprig template disable Report Meet": ["template", "disable", "Report", "Meeting Notes"],
    "sprig template add conf": ["template", "add", "config file.json"],
    "sprig detect fold": ["detect", "folder of mine"],
    "sprig conte": ["contents.txt"],
}


def install_spy(home):
    """A stand-in for the program that answers the completions, and else prints its arguments."""
    (home.path / "bin").mkdir()
    spy = home.path / "bin/sprig"
    spy.write_text(f'#!/bin/sh\ncase $* in *--titles) exec "{home.program}" "$@";; esac\n'
                   'for argument; do echo "<$argument>"; done; echo done.\n')
    spy.chmod(0o755)
    return f"{spy.parent}:{home.environment['PATH']}"


@pytest.mark.parametrize("shell", SHELLS)
def test_tab_completes(home, shell):
    home.configure(template("Meeting Notes"), template(HARD), template("Other"))
    (home.demo / "folder of mine").mkdir()
    (home.demo / "contents.txt").touch()
    (home.demo / "config file.json").touch()
    options, setup = SHELLS[shell]
    child = home.spawn(need(shell, shell), *options, PATH=install_spy(home), PS1="ready$ ")
    child.delaybeforesend = None
    child.sendline(f'{setup}; cd {home.demo}; echo "set"-up')
    child.expect_exact("set-up")
    made = {}
    for typed in COMPLETED:
        child.send(typed + "\t")
        child.send("\r")
        child.expect_exact("done.")
        made[typed] = [found.rstrip("/") for found in re.findall("<([^>]*)>", child.before)]
    child.close(force=True)
    assert made == COMPLETED


def manual(name):
    return re.sub(".\b", "", subprocess.run(["mandoc", "-T", "utf8", MANUALS / name], text=True,
                                            capture_output=True).stdout)


def test_the_manual_pages_are_well_formed_and_name_every_option_of_the_help_and_every_key(home):
    lint = subprocess.run([need("mandoc", "mandoc"), "-T", "lint", "-W", "warning", *MANUALS.iterdir()], text=True,
                          capture_output=True)
    assert (lint.returncode, lint.stdout) == (0, "")
    known = (SOURCE / "src/config/ConfigFields.h").read_text() + (SOURCE / "src/engine/Placeholders.cpp").read_text()
    keys = re.findall(r'(?:Field\{|key == )"(\w+)"', known)
    described = re.findall(r"^ {5}(\w[^(\n]*)", manual("sprig-config.5"), re.MULTILINE)
    assert len(keys) > 30 and set(keys) <= set(re.findall(r"\w+", " ".join(described)))
    commands = manual("sprig.1")
    for command in ([], ["list"], ["new"], ["detect"], ["config"], ["template"], ["undo"]):
        help_text = home.run(*command, "--help").stdout
        for option in set(re.findall(r"--[a-z]+", help_text)):
            assert option in commands, option
