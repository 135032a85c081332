# SPDX-License-Identifier: GPL-3.0-or-later
"""The commands for scripts and for the configuration."""

import json
import os
import re
import unicodedata

import pytest

from sprigtest.home import template


def titles(items):
    return [item.get("title", "---") for item in items]


def test_list_shows_people_names_and_ids_with_sections_as_headings(home):
    home.configure(template("Report"), template("Budget", category="finance"), maxVisibleTemplates=1)
    assert home.run("list").stdout == ("Report      report\n"
                                       "More Templates\n"
                                       "  Finance & Operations\n"
                                       "    Budget  budget\n")


def test_list_shows_programs_the_whole_menu(home):
    home.configure(template("Report"), template("Budget", category="finance", icon="sum"), maxVisibleTemplates=1)
    menu = json.loads(home.run("list", "--json", "..").stdout)
    assert menu["folder"] == str(home.path)
    report, _, more, rule, settings = menu["items"]
    assert report == {"title": "Report", "id": "report", "enabled": True, "icon": "doc"}
    assert rule == {"separator": True}
    assert (settings["title"], more["title"]) == ("Sprig Settings…", "More Templates")
    assert more["items"][0]["items"] == [{"title": "Budget", "id": "budget", "enabled": True, "icon": "sum"}]


def test_list_and_the_menu_say_that_menus_are_switched_off(home):
    home.configure(template("Report"), showInFinder=False)
    result = home.run("list", "--json")
    assert (result.returncode, json.loads(result.stdout)["items"]) == (0, [])
    assert "switched off" in result.stderr
    assert home.run().returncode == 3


@pytest.mark.parametrize("arguments, made, content", [
    (["Report"], "Report.txt", "Report in demo\n"),
    (["report", "Final"], "Final.txt", "Report in demo\n"),  # by its id
    (["Report", "v1.5"], "v1.5", "Report in demo\n"),
    (["Report", "--in", "sub dir"], "sub dir/Report.txt", "Report in sub dir\n"),
    (["--in=sub dir", "Report", "x"], "sub dir/x.txt", "Report in sub dir\n"),
    (["Report", "--", "--in"], "--in.txt", "Report in demo\n"),
    (["Report", "--", "-v"], "-v.txt", "Report in demo\n"),
    (["--", "-dash-"], "-dash-.txt", "-dash- in demo\n"),
    (["list"], "list.txt", "list in demo\n"),
    (["Report", "list"], "list.txt", "Report in demo\n"),
    (["Report", "[a,b]"], "[a,b].txt", "Report in demo\n"),
    (["Report", ""], "Report.txt", "Report in demo\n"),
    (["Asks"], "Asks.txt", "Asks in demo\n"),
    (["Off"], "Off.txt", "Off in demo\n"),
    (["Lead"], "Lead.txt", "  Lead in demo\n"),
    (["  Lead"], "Lead.txt", "  Lead in demo\n"),
    (["twin"], "Second.txt", "Second in demo\n"),  # what the menu shows last
    (["Report", "two\nlines"], "two\nlines.txt", "Report in demo\n"),
])
def test_new_creates_a_file_without_questions(home, arguments, made, content):
    (home.demo / "sub dir").mkdir()
    home.configure(template("Report"), template("-dash-"), template("list"), template("Asks", requiresInput=True),
                   template("Off", enabled=False), template("  Lead"), template("First", id="twin"),
                   template("Second", id="twin"))
    result = home.run("new", *arguments)
    assert (result.returncode, result.stdout, result.stderr) == (0, f"{home.demo}/{made}\n", "")
    assert (home.demo / made).read_text() == content


@pytest.mark.parametrize("arguments, complaint", [
    (["new", "Meetin Notes"], "no template is called “Meetin Notes”. Did you mean “Meeting Notes”?"),
    (["new", "python"], "Did you mean “Python Script”?"),
    (["new", "Nothing like it at all"], 'at all”. “sprig list” shows them all.'),
    (["new"], "which template?"),
    (["new", "a", "b", "c"], "don't know what to do with “c”"),
    (["new", "a", "--in"], "--in needs a value"),
    (["new", "a", "--in", ""], "--in needs a folder"),
    (["nowhere"], "there is no file or folder “nowhere”"),
    (["-weird"], "unknown option “-weird”"),
    (["--bad"], "unknown option “--bad”"),
    ([""], "an argument is empty"),
    (["file", "nowhere"], "there is no file or folder “nowhere”"),
    (["list", "file"], "“file” is not a folder"),
    (["new", "Plain Text", "--in", "file"], "“file” is not a folder"),
    (["new", "Plain Text", "--in", "nowhere"], "there is no file or folder “nowhere”"),
    (["list", "--json", "--titles"], "exclude each other"),
    (["detect", "nowhere"], "there is no file or folder"),
    (["config"], "config needs one of: path, init, check"),
    (["config", "destroy"], "config needs one of"),
    (["config", "path", "file"], "don't know what to do with “file”"),
])
def test_wrong_use_is_explained(home, arguments, complaint):
    (home.demo / "file").touch()
    result = home.run(*arguments)
    assert (result.returncode, result.stdout) == (2, "")
    assert result.stderr.startswith("sprig: ") and complaint in result.stderr
    assert os.listdir(home.demo) == ["file"]


def test_a_folder_without_permission_is_explained(home):
    home.demo.chmod(0o555)
    result = home.run_as_ordinary_user("new", "Plain Text")
    assert (result.returncode, result.stdout) == (3, "")
    assert result.stderr.startswith("sprig: Permission Denied\n"
                                    "  You don't have permission to write files in this directory.\n"
                                    "\n"
                                    "  Technical details:\n")
    assert f"{home.demo}/Untitled.txt" in result.stderr


@pytest.mark.parametrize("arguments", [["a/b"], ["x" * 300]])
def test_a_file_that_cannot_be_created_is_explained(home, arguments):
    (home.demo / "file").touch()
    result = home.run("new", "Plain Text", *arguments)
    assert (result.returncode, result.stdout) == (3, "")
    assert result.stderr.startswith("sprig: Couldn't create the file.\n  The folder may be read-only or unavailable.")
    assert os.listdir(home.demo) == ["file"]


def test_a_current_folder_that_is_gone_is_explained(home):
    script = 'mkdir gone && cd gone && rmdir ../gone && for command in list "new builtin-json" ""; do "$0" $command; echo $?; done'
    result = home.run_shell(script)
    assert (result.stderr, result.stdout) == ("sprig: the current folder is gone\n" * 3, "3\n" * 3)


def test_detect_names_project_types_in_order(home):
    (home.demo / "package.json").touch()
    (home.demo / "src").mkdir()
    (home.demo / "src/Dockerfile").mkdir()
    assert home.run("detect", "src").stdout == "devops\ndocker\njavascript\nnode\n"
    result = home.run("detect", str(home.path))
    assert (result.returncode, result.stdout) == (0, "")


def test_init_writes_a_first_configuration_and_never_over_one(home):
    assert f"“sprig config init” writes a first file, {home.config}" in home.run("config", "path").stderr
    assert home.run("config", "check").stdout.endswith("built-in templates are used: 11 templates\n")
    before = home.run("list", "--json").stdout
    first = home.run("config", "init")
    assert (first.returncode, first.stdout) == (0, f"{home.config}\n")
    document = home.config.read_text()
    assert home.run("list", "--json").stdout == before
    second = home.run("config", "init")
    assert (second.returncode, second.stdout) == (3, "") and "exists already" in second.stderr
    assert home.config.read_text() == document
    assert home.run("config", "path").stdout == f"{home.config}\n"
    assert home.run("config", "check").stdout == f"{home.config}: 11 templates\n"


@pytest.mark.parametrize("place", ["dangling", "other"])
def test_init_respects_what_is_there_in_another_form(home, place):
    home.config.parent.mkdir(parents=True)
    if place == "dangling":
        home.config.symlink_to("nowhere")
    else:
        other = home.path / "Library/Application Support/Kestrel/Sprig/config.json"
        other.parent.mkdir(parents=True)
        other.write_text("{}")
    result = home.run("config", "init")
    assert (result.returncode, result.stdout) == (3, "")
    assert str(home.config if place == "dangling" else other) in result.stderr
    assert not home.config.exists() and not (home.config.parent / "nowhere").exists()


@pytest.mark.parametrize("document, complaint", [
    ('{"version": 1, "settings": {}, "templates": [7]}', "config.json: line 1, column 46: templates[0]: "
     "expected an object, found a number\n  …n\": 1, \"settings\": {}, \"templates\": [7]}\n" + " " * 40 + "^\n"),
    ('{\n\t"vérsion": x}', 'config.json: line 2, column 13: syntax error at "x"\n   "vérsion": x}\n              ^\n'),
    ('{"' + "a" * 500 + '" 1}', "…" + "a" * 35 + '" 1}\n' + " " * 40 + "^\n"),
    ("", "config.json: line 1, column 1: the document ends too early\n"),
    ("\x1b[31m", 'column 1: syntax error at byte 0x1B\n  ^[[31m\n  ^\n'),
])
def test_check_says_what_is_wrong_and_where(home, document, complaint):
    home.config.parent.mkdir(parents=True)
    home.config.write_text(document)
    result = home.run("config", "check", LANG="C.UTF-8")
    assert (result.returncode, result.stdout) == (3, "")
    assert complaint in result.stderr


def test_what_reads_a_broken_configuration_says_so(home):
    home.config.parent.mkdir(parents=True)
    home.config.write_text("{")
    for command in (["list"], ["new", "Plain Text"], []):
        result = home.run(*command)
        assert "can't be used (line 1, column 2: the document ends too early), so" in result.stderr.replace("\n", " ")
        assert result.returncode == (0 if command else 1)


def test_check_warns_of_what_works_but_hardly_as_meant(home):
    templates = [template("A", icon="doc", category="notes"),
                 template("a", id="a", icon="hammer", category="recipes", contentBase64="e"),
                 template("B", id="a", icon="doc", category="Code & Development", contentBase64="eA=="),
                 template("C", contentBase64="%!"), template("a", id="d")]
    document = json.dumps({"version": 1, "settings": {}, "templates": templates}, indent=1)
    result = home.run("config", "check", "-", stdin=document)
    assert (result.returncode, result.stdout) == (0, "standard input: 5 templates\n")
    warned = re.findall(r"input: line (\d+), column \d+: warning: ([^:]+): ", result.stderr)
    lines = document.splitlines()
    assert [(place, lines[int(line) - 1].split('"')[1]) for line, place in warned] == [
        (f"templates[{index}].{key}", key) for index, key in
        ((1, "id"), (1, "icon"), (1, "category"), (1, "contentBase64"), (2, "id"), (3, "contentBase64"), (4, "name"))]


def test_check_is_not_lost_in_a_document_with_a_warning_for_each_template(home):
    templates = [template(f"Ü {number}", icon="hammer") for number in range(10_000)]
    result = home.run("config", "check", "-", stdin=json.dumps({"version": 1, "settings": {}, "templates": templates}))
    assert result.stdout == "standard input: 10000 templates\n" and result.stderr.count(".icon: ") == 10_000


def test_check_counts_templates(home):
    home.configure(template("A"), template("B", enabled=False), template("C"))
    assert home.run("config", "check", os.path.relpath(home.config, home.demo)).stdout == (
        "../.config/sprig/config.json: 3 templates, 1 of them disabled\n")
    assert home.run("config", "check", "nowhere").returncode == 3
    assert home.run("config", "check", ".").returncode == 3


def test_what_cannot_be_printed_is_a_failure(home):
    for command in ("list", "detect", "--version"):
        result = home.run_shell(f'touch Gemfile; "$0" {command} >&-')
        assert (result.returncode, result.stderr[:23]) == (3, "sprig: can't write to s"), command
    full = home.run_shell('"$0" new "Markdown Note" > /dev/full')
    assert full.returncode == 3 and f"created {home.demo}/Untitled.md, but" in full.stderr


def test_where_memory_does_not_suffice_for_the_document_it_is_none(home):
    if re.search("[at]san", str(home.program)):
        return
    home.write(home.config, '{"x": [' + "1," * 20_000_000)
    listed, checked = (home.run_shell(f'ulimit -v 300000; exec "$0" {command}') for command in ("list", "config check"))
    assert (listed.returncode, listed.stdout[:13]) == (0, "Markdown Note") and "not enough memory for it" in listed.stderr
    assert (checked.returncode, checked.stderr) == (3, "sprig: there is not enough memory for this\n")


def columns(text):
    return sum(2 if unicodedata.east_asian_width(letter) in "FW" else 1 for letter in text)


@pytest.mark.parametrize("locale, more", [
    ("ar_EG", "قوالب أخرى"), ("de_DE", "Weitere Vorlagen"), ("es_ES", "Más plantillas"), ("fr_FR", "Autres modèles"),
    ("ja_JP", "その他のテンプレート"), ("zh_CN", "更多模板")])
def test_people_read_their_language_and_files_and_programs_know_nothing_of_it(home, locale, more):
    language = home.speaking(locale)
    menu = home.run("list", **language).stdout
    assert f"\n{more}\n" in menu and "Markdown Note " in menu
    for command in ([], ["list"], ["new"], ["detect"], ["config"], ["template"], ["undo"]):
        text, english = (home.run(*command, "--help", **environment).stdout for environment in (language, {}))
        assert "Usage:" in english and text != english and max(map(columns, (text + english).splitlines())) <= 80
    made = home.run("--verbose", "new", "Plain Text", **language)
    assert (made.stdout, made.returncode) == (f"{home.demo}/Untitled.txt\n", 0)
    assert "templateAction SUCCESS: Created file" in made.stderr
    home.write(home.config, "[]")
    broken = home.run("--verbose", "list", **language).stderr
    assert "json: line 1, column 1: the document: expected an object, found a list. Using fallback." in broken
    assert broken.count("expected an object") == 1
