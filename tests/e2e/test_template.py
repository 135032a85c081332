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


def test_a_folder_of_templates_is_imported_and_imported_again(home):
    folder = home.path / "Vorlagen"
    files = {"Letter.txt": LETTER, ".hidden.txt": "", "kept~": "", "Code/deep/er/Tool.py": "1", "real/é/Plan.md": "old",
             "1/2/3/4/5/6/far.txt": "", "note.desktop": "[Desktop Entry]\nType=Link\nName=Notes…\nName[de]=Notizen…\n"
             "URL=file:///{}/real/%C3%A9/Plan.md\n".format(folder), "web.desktop": "[Desktop Entry]\nType=Link\nURL=http://x"}
    for name, text in files.items():
        (folder / name).parent.mkdir(parents=True, exist_ok=True)
        (folder / name).write_bytes(text.encode())
    (folder / "loop").symlink_to(folder)
    (folder / "dangling").symlink_to("nowhere")
    home.write(".config/user-dirs.dirs", '# a comment\nXDG_TEMPLATES_DIR="$HOME/Vor\\lagen"\n')
    home.configure(template("Letter"))
    answer = home.run("template", "import", LANG="de_DE.UTF-8")
    assert (answer.returncode, answer.stdout) == (0, "tool\nletter-2\nnotizen\n")
    said = answer.stderr
    assert f"{folder}/loop was read already" in said
    assert f"{folder}/1/2/3/4/5/6 is too deep in folders" in said and f"{folder}/dangling is a link to nothing" in said
    assert f"{folder}/web.desktop is no link to a file of this computer" in said
    items = {item["importedFrom"]: item for item in json.loads(home.config.read_text())["templates"][1:]}
    assert items[f"{folder}/Code/deep/er/Tool.py"]["category"] == "Code"
    assert items[f"{folder}/real/é/Plan.md"]["name"] == "Notizen"
    assert not [source for source in items if "hidden" in source or "~" in source]
    before = home.config.read_bytes()
    assert home.run("template", "import").stdout == "" and home.config.read_bytes() == before
    (folder / "Letter.txt").write_text("{{date}}")
    home.run("template", "disable", "letter-2")
    assert home.run("template", "import", folder).stdout == ""
    again = json.loads(home.run("template", "show", "letter-2").stdout)
    assert (again["content"], again["contentBase64"], again["enabled"]) == ("", "e3tkYXRlfX0=", False)


@pytest.mark.parametrize("directory", ['"$HOME"', '"$HOME/"', '"/"', "nonsense", '"relative"'])
def test_no_folder_is_imported_that_was_not_chosen_for_templates(home, directory):
    home.write(".config/user-dirs.dirs", f"XDG_TEMPLATES_DIR={directory}\n")
    answer = home.run("template", "import")
    assert answer.returncode == 2 and "you have no folder for templates" in answer.stderr


def test_templates_are_shared_as_they_stand(home):
    home.configure(template("A", note="\u0078"), template("B"))
    shared = home.run("template", "export", "a", "B").stdout
    (home.demo / "two.sprig-template").write_text(shared)
    assert home.run("template", "add", "two.sprig-template").stdout == "a-2\nb-2\n"
    assert json.loads(home.run("template", "show", "a-2").stdout)["note"] == "x"
    home.config.unlink()
    assert home.run("template", "add", "two.sprig-template").stdout == "a\nb\n"
    (home.demo / "two.sprig-template").write_text("{")
    answer = home.run("template", "add", "two.sprig-template")
    assert (answer.returncode, answer.stdout) == (3, "") and answer.stderr.startswith("sprig: line 1")
