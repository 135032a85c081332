# SPDX-License-Identifier: GPL-3.0-or-later
"""Templates shown and changed in a terminal."""

import json

import pytest

from sprigtest.home import template

LETTER = "Dear {{reader}},\r\n"


def names(home):
    return home.run("template", "list", "--titles").stdout.splitlines()


def test_a_file_becomes_a_template_that_makes_the_same_file_again(home):
    files = {"Letter.txt": LETTER.encode(), "Dated.md": b"{{date}}", "Sheet.bin": b"\xff\0", "Empty": b"", "día 1.py": b"1"}
    for name, content in files.items():
        (home.demo / name).write_bytes(content)
        printed = home.run("template", "add", name, "--name", f"My {name}")
        assert printed.returncode == 0, printed.stderr
        planned = home.run("new", printed.stdout.strip(), "--dry-run").stdout
        assert home.run("new", printed.stdout.strip()).stdout == planned
        with open(planned.rstrip("\n"), "rb") as made:
            assert made.read() == content
    assert names(home)[-6:] == ["Excel Spreadsheet", *(f"My {name}" for name in files)]
    added = json.loads(home.config.read_text())["templates"][-5:]
    assert [item["id"] for item in added] == ["my-letter-txt", "my-dated-md", "my-sheet-bin", "my-empty", "my-d-a-1-py"]
    assert ["contentBase64" in item for item in added] == [False, True, True, False, False]
    assert added[4]["category"] == "developer"


def test_changes_leave_the_rest_of_the_document_as_its_owner_wrote_it(home):
    home.configure(*(template(name) for name in "ABCD"))
    text = home.config.read_text().replace('"version"', '"$schema": "\\u0078",\r\n\t"version"')
    home.config.write_bytes(text.encode())
    for arguments in [("disable", "b", "C"), ("enable", "B"), ("move", "d", "1"), ("remove", "a")]:
        answer = home.run("template", *arguments)
        assert (answer.returncode, answer.stdout + answer.stderr) == (0, "")
    assert home.run("template").stdout == "D  d\nB  b\nC  c  (disabled)\n"
    assert home.config.read_bytes().startswith(b'{"$schema": "\\u0078",\r\n\t"version"')
    assert len(list((home.path / ".local/state/sprig").glob("config-*.json"))) >= 1


@pytest.mark.parametrize("editor, status, said, content", [
    ("sed -i s/notes/other/", 0, "", '"category": "other"'),
    ("sed -i s/enabled/x/", 1, "sprig: line 1, column 1: enabled: missing", '"category": "notes"'),
    ("sed -i s/^{/{{/", 1, "sprig: line 1, column 2: ", '"category": "notes"'),
    ("false", 3, "sprig: the editor failed, so nothing was changed", '"category": "notes"'),
    ("sprig template disable B #", 0, "", '"category": "notes"'),
    ("sprig template disable A #", 3, "sprig: the template was changed elsewhere meanwhile", '"enabled": false'),
])
def test_the_text_of_a_template_is_edited_in_the_users_editor(home, editor, status, said, content):
    home.run("config", "init")
    home.configure(template("A"), template("B"))
    answer = home.run("template", "edit", "A", EDITOR=editor, stdin="n\n")
    assert answer.returncode == status and answer.stderr.startswith(said), answer
    assert content in home.run("template", "show", "a").stdout


@pytest.mark.parametrize("arguments, document, status, said", [
    (("remove", "A", "nope"), None, 2, "no template is called “nope”"),
    (("disable", "Same"), None, 2, "several templates are called “Same”"),
    (("move", "A", "0"), None, 2, "“0” is no position"),
    (("add", "missing"), None, 2, "there is no file or folder “missing”"),
    (("add", "."), None, 3, "can't read"),
    (("edit",), None, 2, "something is missing"),
    (("enable", "A"), "{", 3, "the configuration file is broken (line 1"),
])
def test_what_cant_be_done_is_said_and_changes_nothing(home, arguments, document, status, said):
    home.configure(template("A"), template("Same"), template("Same", id="other"))
    if document:
        home.config.write_text(document)
    before = home.config.read_bytes()
    answer = home.run("template", *arguments)
    assert answer.returncode == status and said.lower() in answer.stderr.lower(), answer
    assert home.config.read_bytes() == before
