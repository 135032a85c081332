# SPDX-License-Identifier: GPL-3.0-or-later
"""A user at a terminal, from the menu to the file."""

import os
import signal
import subprocess

import pytest

from sprigtest.home import BUILTINS, template
from sprigtest.waiting import wait_for


def test_a_newcomer_is_offered_the_built_in_templates_and_the_last_one_below_more(home):
    session = home.sprig().sees("New file in ~/demo", *BUILTINS, "───", "11  More Templates ›", "12  Sprig Settings…")
    session.at_menu().types("11\r").sees("› More Templates", "1  Excel Spreadsheet", "0  Back")
    session.at_menu().types("0\r").sees("New file in ~/demo\r\n", "Markdown Note")
    session.at_menu().types("\x04").ends(1)


@pytest.mark.parametrize("keys, name", [
    ("\r", "Report.txt"),
    (" 7\r", "Report 7.txt"),  # the cursor stands before the extension
    ("\x0b\r", "Report.txt"),  # without its extension, which comes back
    ("\x01Final \r", "Final Report.txt"),
    ("\x05\x15Zoë\r", "Zoë.txt"),
    ("\x05\x15  \r", "Report.txt"),  # nothing typed takes the suggestion
    ("\x1b[D\x1b[D\x7f\t\r", "Reprt.txt"),
])
def test_the_suggested_name_can_be_edited(home, keys, name):
    home.configure(template("Report"))
    path = home.sprig().at_menu().types("report\r").sees("> Report.txt").types(keys).ends(0)
    assert path == f"{home.demo}/{name}\n"
    assert os.listdir(home.demo) == [name]


@pytest.mark.parametrize("key", ["\x03", "\x04", "\x1b"])
@pytest.mark.parametrize("where", ["menu", "prompt"])
def test_control_c_control_d_and_escape_cancel_and_leave_the_terminal_in_order(home, key, where):
    session = home.sprig().at_menu()
    if where == "prompt":
        session.types("plain\r").sees("> Untitled.txt")
    assert session.types("half a name" + key).ends(1) == ""
    assert os.listdir(home.demo) == []


@pytest.mark.parametrize("signal_number", [signal.SIGTERM, signal.SIGHUP])
def test_a_signal_that_ends_the_program_leaves_the_terminal_in_order(home, signal_number):
    session = home.sprig().at_menu()
    shell = session.child.pid
    children = open(f"/proc/{shell}/task/{shell}/children").read().split()
    os.kill(int(children[0]), signal_number)
    session.ends(128 + signal_number)


def test_the_menu_follows_a_configuration_that_is_edited_while_it_waits(home):
    home.configure(template("First"))
    session = home.sprig().sees("1  First").at_menu()
    home.configure(template("First"), template("Second"))
    wait_for(lambda: "Loaded config with 2 total" in home.log.read_text())
    session.types("\r").sees("2  Second").at_menu()
    home.configure(template("Third"), template("First"), template("Second"))
    wait_for(lambda: "Loaded config with 3 total" in home.log.read_text())
    session.types("nothing like that\r").sees("nothing in the menu is called “nothing like that”", "1  Third")
    session.at_menu().types("third\r").sees("> Third.txt").types("\r").ends(0)
    assert (home.demo / "Third.txt").read_text() == "Third in demo\n"


@pytest.mark.parametrize("typed, made", [
    ("note", "Note.txt"),  # a title wins over longer ones
    ("NOTES", "Notes of all.txt"),
    ("rea\rReadme", "Readme.txt"),  # ambiguous, then one by its title
    ("deep", "Deep.txt"),  # found in a submenu
    ("7\r2\r1", "Hidden away.txt"),
    ("7\r1\r0\r2\r1", "Hidden away.txt"),
])
def test_entries_are_picked_by_number_or_by_the_start_of_a_title(home, typed, made):
    names = ["Note", "Notes of all", "Readme", "README too", "Plain", "Last"]
    more = [template("Hidden away", category="recipes"), template("Deep", category="finance")]
    home.configure(*[template(name) for name in names], *more, defaultBehavior="never", maxVisibleTemplates=6)
    assert home.sprig().at_menu().types(typed + "\r").ends(0) == f"{home.demo}/{made}\n"


def test_an_ambiguous_start_lists_what_it_could_be(home):
    home.configure(template("Meeting Notes"), template("Plain"), template("Meeting Minutes"))
    session = home.sprig().at_menu().types("mee\r")
    session.sees("“mee” could be any of these:", "1  Meeting Notes", "3  Meeting Minutes", "> ")
    session.types("3\r").sees("> Meeting Minutes.txt").types("\x04").ends(1)


def test_what_is_disabled_is_shown_and_not_picked(home):
    home.configure(template("Off", enabled=False))
    session = home.sprig().sees("      No Templates Configured\r\n", "1  Sprig Settings…").at_menu()
    session.types("no templates\r").sees("nothing in the menu").at_menu().types("\x04").ends(1)


def test_the_settings_entry_says_where_they_are_and_comes_back_to_the_menu(home):
    session = home.sprig().at_menu().types("sprig s\r").sees("sprig config init").at_menu()
    home.configure(template("Mine"))
    session.types("\r").sees("1  Mine").at_menu().types("2\r").sees(str(home.config), "1  Mine").at_menu()
    session.types("\x04").ends(1)


@pytest.mark.parametrize("arguments, cwd, lands_in", [
    (["sub"], "", "sub"), (["sub/file.txt"], "", "sub"), (["sub/file.txt", "other"], "", "sub"), (["link"], "", "link"),
    (["sub/.."], "", "."), (["link/.."], "", "elsewhere"), (["./list"], "", "list"), (["--", "list"], "", "list"),
    (["--", "-weird-"], "", "-weird-"), (["[a,b]"], "", "[a,b]"), ([], "link", "link"), (["dangling"], "", "."),
])
def test_the_file_lands_where_the_arguments_say(home, arguments, cwd, lands_in):
    for folder in ("sub", "list", "-weird-", "[a,b]", "elsewhere/target", "other"):
        (home.demo / folder).mkdir(parents=True)
    (home.demo / "sub/file.txt").touch()
    (home.demo / "link").symlink_to("elsewhere/target")
    (home.demo / "dangling").symlink_to("nowhere")
    home.configure(template("Here"), defaultBehavior="never")
    where = home.demo / cwd
    result = home.run(*arguments, cwd=where, stdin="1\n", PWD=str(where))
    assert (result.returncode, result.stdout) == (0, f"{os.path.normpath(home.demo / lands_in)}/Here.txt\n")


def test_plain_lines_work_where_there_is_no_terminal(home):
    home.configure(template("Note"))
    result = home.run(stdin="note\n\nrest")
    assert (result.returncode, result.stdout) == (0, f"{home.demo}/Note.txt\n")
    assert "> [Note.txt]\n" in result.stderr
    for ended in ("", "\n", "note\n"):
        assert home.run(stdin=ended).returncode == 1
    rest = home.run_shell('"$0" 2>/dev/null; cat', stdin="note\nA\nrest")
    assert rest.stdout == f"{home.demo}/A.txt\nrest"


def test_an_interrupt_cancels_without_a_terminal_too(home):
    with subprocess.Popen([home.program], cwd=home.demo, env=home.env({}), stdin=subprocess.PIPE,
                          stderr=subprocess.PIPE, text=True) as process:
        while "leave." not in process.stderr.readline():
            pass
        process.stderr.readline()
        process.send_signal(signal.SIGINT)
        assert process.wait() == 1


def test_verbose_shows_the_log_without_tearing_the_line_being_edited(home):
    home.configure(template("Note"))
    session = home.sprig("--verbose").sees("[SprigFinder] menu(for: 1) requested").at_menu().types("no")
    home.configure(template("Note"), template("New"))
    session.sees("[SprigFinder] Loaded config with 2 total", "> no")
    session.types("te\r").sees("> Note.txt").types("\r").ends(0)
