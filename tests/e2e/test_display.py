# SPDX-License-Identifier: GPL-3.0-or-later
"""What reaches the terminal: characters it can show, colours it knows, nothing that commands it."""

import os
import pty
import subprocess

import pytest

from sprigtest.home import template

HOSTILE = "Ev\u001b[31mil\u0007\u009bT\u202exet\n.txt"


def screen(home, cwd=None, **environment):
    session = home.sprig(cwd=cwd, **environment).sees("leave.")
    before = session.child.before
    session.sees("> ").types("\x04").ends(1)
    return before


@pytest.mark.parametrize("environment, is_colored", [
    ({"NO_COLOR": None}, True), ({"NO_COLOR": ""}, True), ({"NO_COLOR": "1"}, False),
    ({"NO_COLOR": None, "TERM": "dumb"}, False), ({"NO_COLOR": None, "TERM": None}, False),
])
def test_colour_is_for_terminals_that_know_it_and_people_who_want_it(home, environment, is_colored):
    assert ("\x1b[1m" in screen(home, **environment)) == is_colored


def test_pipes_get_no_colour(home):
    result = home.run(stdin="", NO_COLOR=None)
    assert "\x1b" not in result.stderr and "\x1b" not in home.run("list", NO_COLOR=None).stdout


def test_titles_are_shown_in_full_in_utf8_and_by_stand_ins_in_the_c_locale(home):
    home.configure(template("Zoë’s “plan”…"), template("Other"), maxVisibleTemplates=1)
    assert "1  Zoë’s “plan”…\r\n" in screen(home)
    plain = screen(home, LANG="C")
    assert "1  Zo?'s \"plan\"...\r\n" in plain and "2  More Templates >\r\n" in plain and plain.isascii()


@pytest.mark.parametrize("locale", ["C", "C.UTF-8"])
def test_a_name_survives_editing_in_every_locale(home, locale):
    home.configure(template("Zoë"))
    session = home.sprig(LANG=locale).at_menu().types("1\r").sees("Enter a name", "> ")
    assert session.types(" né\r").ends(0) == f"{home.demo}/Zoë né.txt\n"


def test_names_cannot_command_the_terminal(home):
    folder = home.demo / "a\x1b]0;owned\x07\x9b"
    folder.mkdir()
    home.configure(template(HOSTILE), template("Good"))
    shown = screen(home, cwd=folder)
    assert "1  Ev^[[31mil^G?T?xet^J.txt\r\n" in shown and "demo/a^[]0;owned^G?" in shown
    session = home.sprig(cwd=folder).at_menu().types("1\r").sees("New Ev^[[31mil", "[Ev^[[31mil^G?T?xet^J.txt.txt] > ")
    assert "\x1b]0" not in session.child.before
    assert session.types("\r").ends(0) == f"{folder}/{HOSTILE}.txt\n"
    shown, output = pty.openpty()
    subprocess.run([home.program, "new", "Good"], cwd=folder, env=home.env({}), stdout=output, check=True)
    assert os.read(shown, 4096).decode() == f"{home.demo}/a^[]0;owned^G?/Good.txt\r\n"
    result = home.run("new", "\x1b[31m", cwd=folder)
    assert "\x1b" not in result.stderr + home.run("list", cwd=folder).stderr


def test_long_titles_are_cut_to_the_width(home):
    home.configure(template("長" * 60), template("x" * 200))
    lines = screen(home).splitlines()
    assert f"   1  {'長' * 36}…" in lines
    assert f"   2  {'x' * 72}…" in lines


def test_the_program_stops_quietly_when_nobody_reads(home):
    home.configure(*[template(f"{number:05}" * 40) for number in range(2000)], maxVisibleTemplates=5000)
    result = home.run_shell('"$0" list | head -1')
    assert result.stdout.startswith("00000") and result.stderr == ""
