# SPDX-License-Identifier: GPL-3.0-or-later
"""The running extension, as file managers see it."""

import ctypes
import os
import pathlib
import shutil
import signal
import subprocess
import sys

import pytest
from conftest import PROGRAM
from gi.repository import GLib
from sprigtest.bus import THUNAR, FileManager, goes_on_for, held, uri, wait_until
from sprigtest.desktop import install_settings
from sprigtest.home import template

SUBMENU, SEPARATOR, ITEM = 2, 1, 0


def lines(home, prefix):
    return [line.split("] ", 1)[1] for line in home.log.read_text().splitlines() if f"] {prefix}" in line]


@pytest.mark.parametrize("kind", [0, 1, 2, 3])
def test_the_menu_offers_the_built_in_templates(desktop, kind):
    rows = desktop.manager().menu(kind, desktop.home.demo)
    below = -1
    if kind != 3:
        below = 0
        assert rows.pop(0) == (-1, SUBMENU, "", "Sprig", "sprig-doc-badge-plus-symbolic", "Sprig", True)
    assert rows[2][:4] == (below, ITEM, "template:builtin-meeting-notes", "Meeting Notes")
    assert [row[1] for row in rows] == [ITEM] * 10 + [SEPARATOR, SUBMENU, ITEM, SEPARATOR, ITEM]
    assert rows[11][3] == "More Templates" and rows[12][0] == below + 12
    assert rows[-1] == (below, ITEM, "settings", "Sprig Settings…", "sprig-gearshape-symbolic", "Settings", True)


def test_there_is_no_menu_for_other_kinds(desktop, manager):
    desktop.home.configure(template("Note"))
    assert manager.menu(4) == manager.menu(2**32 - 1) == []
    assert lines(desktop.home, "menuKind ") == ["menuKind 4 ignored", "menuKind 4294967295 ignored"]


def test_the_file_manager_is_told_what_it_needs(desktop, manager):
    assert uri(desktop.home.path) in manager.property("ServedFolders")
    assert [manager.property("Toolbar" + name) for name in ("Name", "ToolTip", "Icon")] == [
        "Sprig", "Create a new file from template", "sprig-doc-badge-plus-symbolic"]
    manager.call("BeginObserving", "(s)", uri(desktop.home.demo))
    manager.call("EndObserving", "(s)", uri(desktop.home.demo))
    assert lines(desktop.home, "beginObserving") == [f"beginObservingDirectory: {desktop.home.demo}"]
    assert lines(desktop.home, "endObserving") == [f"endObservingDirectory: {desktop.home.demo}"]


def in_mounts_of(process, call, *arguments):
    """Calls the C library with the mounts of another process."""
    child = os.fork()
    if child == 0:
        library = ctypes.CDLL(None)
        spaces = [os.open(f"/proc/{process}/ns/{kind}", os.O_RDONLY) for kind in ("user", "mnt")]
        os._exit(1 if any(library.setns(space, 0) for space in spaces) or library[call](*arguments) else 0)
    assert os.waitpid(child, 0)[1] == 0


BIND = 4096
DETACH = 2  # also while the extension reads a file there


def test_what_is_mounted_later_is_served_while_it_is(apart, home):
    manager = apart.manager()
    before = manager.property("ServedFolders")
    # The root of a container is no volume.
    folder = os.fsencode(os.path.dirname(PROGRAM))
    in_mounts_of(manager.extension_process(), "mount", folder, b"/mnt", None, BIND, None)
    wait_until(lambda: manager.served == sorted([*before, "file:///mnt"]) == manager.property("ServedFolders"))
    assert lines(home, "Initialized") == [f"Initialized FinderSync monitoring {len(before)} directory URLs"]
    in_mounts_of(manager.extension_process(), "umount", b"/mnt")
    wait_until(lambda: manager.served == before == manager.property("ServedFolders"))


def first(manager):
    return manager.menu()[1][2]


def test_a_mount_over_the_configurations_folder_counts_while_it_is_there(apart, home):
    home.configure(template("Mounted"))
    shutil.copytree(home.config.parent, home.path / "disk")
    home.configure(template("Own"))
    manager = apart.manager()
    assert first(manager) == "template:own"
    process, folder = manager.extension_process(), os.fsencode(home.config.parent)
    for name in ("mounted", "saved"):
        in_mounts_of(process, "mount", os.fsencode(home.path / "disk"), folder, None, BIND, None)
        wait_until(lambda: first(manager) == "template:mounted")
        home.write(home.path / "disk/config.json", home.config.read_text().replace("own", name))
        wait_until(lambda: first(manager) == f"template:{name}")
        home.write(home.path / "disk/config.json", home.config.read_text().replace("own", "mounted"))
        in_mounts_of(process, "umount2", folder, DETACH)
        wait_until(lambda: first(manager) == "template:own")


@pytest.mark.parametrize("limit", ["instances", "watches"])
def test_where_nothing_can_be_watched_kept_menus_hear_of_changes_all_the_same(home, start, limit):
    lowered = f"/bin/sh -c 'echo 0 >/proc/sys/user/max_inotify_{limit}; exec {PROGRAM}'"
    manager = start(f"/usr/bin/unshare --user --map-current-user --keep-caps {lowered}", program=PROGRAM).manager()
    manager.menu()
    for number in (1, 2):
        home.configure(template(f"T{number}"))
        wait_until(lambda: len(manager.changes) == number)
        assert first(manager) == f"template:t{number}"
    assert len(lines(home, "Can't watch")) == 1


NAMES = ["plain", "a b", "100%", "日本 👋", "line\nbreak", "#?&", os.fsdecode(b"bytes\xff")]


@pytest.mark.parametrize("name", NAMES)
@pytest.mark.parametrize("kind", [0, 1])
def test_a_pick_creates_the_file_and_shows_it_where_it_was_clicked(desktop, manager, name, kind):
    folder = desktop.home.demo / name
    folder.mkdir()
    (folder / "selected").touch()
    desktop.home.configure(template("Note", content="hello"), defaultBehavior="never")
    other = desktop.manager().own("org.freedesktop.FileManager1")
    assert manager.pick("template:note", folder / "selected" if kind == 0 else folder, kind,
                        activation_token="token") == ()
    wait_until(lambda: manager.shown)
    made = GLib.Uri.unescape_bytes(manager.shown[0][0][0].removeprefix("file://"), -1, None).get_data()
    assert made == os.fsencode(folder / "Note.txt")
    assert pathlib.Path(os.fsdecode(made)).read_text() == "hello"
    assert manager.shown[0][1] == "token" and other.shown == []


@pytest.mark.parametrize("session_has, error, lands", [
    ("session", None, "session"), ("refusing session", None, "folder"), (None, None, "folder"),
    ("session", "org.freedesktop.DBus.Error.UnknownMethod", "session"),
    ("session", "org.freedesktop.DBus.Error.UnknownObject", "session"),
    ("session", "org.freedesktop.DBus.Error.AccessDenied", "log"),
])
def test_a_file_that_the_clicked_manager_can_not_show_is_shown_elsewhere(desktop, session_has, error, lands):
    desktop.home.configure(template("Note"), defaultBehavior="never")
    notes = desktop.handler("inode/directory")
    session = desktop.manager()
    if session_has:
        session.own("org.freedesktop.FileManager1")
        session.refusal = "org.freedesktop.DBus.Error.Failed" if session_has.startswith("refusing") else None
    manager = desktop.manager(shows_items=error is not None)
    manager.refusal = error
    manager.pick("template:note", desktop.home.demo, activation_token="token")
    if lands == "session":
        wait_until(lambda: session.shown)
    elif lands == "folder":
        wait_until(lambda: notes.exists() and notes.read_text() == f"token {desktop.home.demo}\n")
    else:
        wait_until(lambda: "Can't have the file shown" in desktop.output.read_text() or
                   "Can't have the file shown" in journal())
    assert bool(session.shown) == (lands == "session" or session_has == "refusing session")


A_PICK = """
import sys
from sprigtest.bus import FileManager
manager = FileManager(sys.argv[1])
manager.menu(1, sys.argv[2])
manager.pick("template:note", sys.argv[2], activation_token="token")
"""


@pytest.mark.parametrize("program, shown", [
    ("nautilus", "token --select {}/Note.txt"), ("dolphin", "token --select {}/Note.txt"),
    ("nemo", "token {}/Note.txt"), ("thunar", ("file://{}", "Note.txt", "", "token")), ("caja", None),
])
def test_a_file_manager_that_was_closed_meanwhile_is_started_again_for_the_file(home, start, program, shown):
    started = home.path / "started"
    home.write(f"bin/{program}", f'#!/bin/sh\necho "$DESKTOP_STARTUP_ID" "$@" > {started}\n').chmod(0o755)
    home.configure(template("Note"), defaultBehavior="never")
    desktop = start(PATH=f"{home.path}/bin:/usr/bin:/bin")
    session = desktop.manager().own("org.freedesktop.FileManager1")
    selected = session.asked_of("org.xfce.FileManager", THUNAR)
    (home.path / "closed").mkdir()
    closed = shutil.copy(sys.executable, home.path / "closed" / program)
    subprocess.run([closed, "-c", A_PICK, desktop.address, home.demo.as_uri()], check=True,
                   env={**os.environ, "PYTHONPATH": os.pathsep.join(sys.path)})
    wait_until(lambda: session.shown or selected or started.exists() and started.read_text())
    seen = started.read_text().strip() if started.exists() else selected[0] if selected else None
    assert str(seen) == str(shown).format(home.demo)


def journal():
    return subprocess.run(["journalctl", "-t", "sprig-extension", "-n", "5"], capture_output=True, text=True).stdout


def test_the_settings_open_with_whatever_handles_their_url(desktop):
    notes = desktop.handler("x-scheme-handler/sprig")
    desktop.manager().pick("settings", desktop.home.demo, activation_token="token")
    wait_until(lambda: notes.exists() and notes.read_text() == "token sprig://settings\n")


def test_settings_that_the_bus_starts_get_the_token_of_the_click(desktop):
    install_settings(desktop.home, "/bin/false")
    opened = desktop.manager().asked_of("com.kestrel.Sprig")
    desktop.manager().pick("settings", desktop.home.demo, activation_token="token")
    wait_until(lambda: opened)
    (urls, platform_data), = opened
    # GLib has had several names for it, and newer releases send two.
    assert urls == ["sprig://settings"] and set(platform_data.values()) == {"token"}


def test_where_nothing_handles_the_settings_url_only_the_log_shows_the_pick(desktop, manager):
    manager.pick("settings", desktop.home.demo)
    wait_until(lambda: lines(desktop.home, "openSettingsAction") == ["openSettingsAction invoked"])
    assert manager.menu() != []


def test_a_configuration_is_announced_and_followed_and_what_older_menus_offered_can_be_picked(desktop, manager):
    revision = manager.property("Revision")
    assert first(manager) == "template:builtin-markdown"
    for name in ("Mine", "Other"):
        desktop.home.configure(template(name), defaultBehavior="never")
        wait_until(lambda: first(manager) == f"template:{name.lower()}")
    wait_until(lambda: manager.changes and manager.changes[-1] == manager.property("Revision"))
    assert manager.changes[0] > revision and manager.changes == sorted(set(manager.changes))
    manager.pick("template:mine", desktop.home.demo)
    wait_until(lambda: manager.shown)
    assert (desktop.home.demo / "Mine.txt").exists()


def test_what_the_bus_has_no_room_for_is_said_once(desktop):
    desktop.home.configure(*[template(f"T{number}") for number in range(3000)])
    for _ in range(2):
        assert desktop.manager().menu()[-1][2] == "settings"
    assert len([line for line in (desktop.printed() + journal().splitlines()) if "no room for the last" in line]) == 1


BAD_URIS = ["", "relative", "/plain/path", "file:relative", "file://host/a", "sftp://host/a", "trash:///", "file:///%zz",
            "file:///a%00b", "file:///a%2Fb", "file:///" + "x" * 5000, "file:///a#b"]
GOOD, HOME = "file:///tmp", "file://HOME"
MALFORMED = [("GetMenu", "(uasa{sv})", (kind, [bad], {})) for bad in BAD_URIS for kind in (0, 1)]
MALFORMED += [("Activate", "(suasa{sv})", ("settings", 1, [bad], {})) for bad in BAD_URIS]
MALFORMED += [("BeginObserving", "(s)", (bad,)) for bad in BAD_URIS]
MALFORMED += [("Activate", "(suasa{sv})", ("settings", 1, targets, {})) for targets in ([], [GOOD], ["file:///home/.."])]
MALFORMED += [
    ("GetMenu", "(sasa{sv})", ("0", [], {})), ("GetMenu", "(uas)", (0, [])), ("GetMenu", "()", ()),
    ("GetMenu", "(uaia{sv})", (0, [1], {})), ("Activate", "(u)", (1,)), ("BeginObserving", "(u)", (1,)),
    *[("Activate", "(suasa{sv})", (action, kind, [HOME], {}))
      for action, kind in (("", 1), ("templat", 1), ("settings", 9), ("x" * 1_000_000, 1))],
    ("NoSuchMethod", "()", ()),
]


def test_calls_that_make_no_sense_get_an_error_and_do_no_harm(desktop, manager):
    manager.menu()
    process = manager.extension_process()
    desktop.home.log.write_text("")
    for method, signature, arguments in MALFORMED:
        arguments = [[uri(desktop.home.path)] if argument == [HOME] else argument for argument in arguments]
        error = manager.refusal_of(method, signature, *arguments)
        assert error in ("InvalidArgs", "UnknownMethod"), (method, arguments)
    for name in ("NoSuch", ""):
        assert manager.refusal_of("Get", "(ss)", "com.kestrel.Sprig.Extension1", name,
                                  interface="org.freedesktop.DBus.Properties") == "InvalidArgs"
    assert manager.extension_process() == process and desktop.home.log.read_text() == ""
    assert len(manager.menu(0, *[GOOD, *BAD_URIS] * 1_000)) > 10


def test_a_stale_pick_is_searched_for_as_its_item_was(desktop, manager):
    desktop.home.configure(template("Old", content="old"), template("Gone"), defaultBehavior="never")
    manager.menu(1, desktop.home.path / "elsewhere")
    desktop.home.configure(template("New", id="old", content="new"), template("Off", enabled=False), defaultBehavior="never")
    wait_until(lambda: manager.changes)
    for action, title in (("old", "Old"), ("gone", ""), ("x", "Off"), ("no-such", "Lost")):
        manager.pick(f"template:{action}", desktop.home.demo / "no-file", 0, title=title)
    wait_until(lambda: lines(desktop.home, "templateAction error"))
    assert sorted((path.name, path.read_text()) for path in desktop.home.demo.iterdir()) == [
        ("Gone.txt", "Gone in demo\n"), ("Off.txt", "Off in demo\n"), ("Old.txt", "old")]
    assert lines(desktop.home, "templateAction error") == ["templateAction error: Could not find template for 'Lost'"]


def test_observing_fills_no_log(desktop, manager):
    refused = [manager.refusal_of("BeginObserving", "(s)", uri(desktop.home.demo)) for _ in range(300)]
    assert len(lines(desktop.home, "beginObserving")) == refused.count(None) < 200 and set(refused) == {None, "Failed"}


def test_odd_platform_data_is_no_reason_to_refuse_a_pick(desktop, manager):
    desktop.home.configure(template("Note"), defaultBehavior="never")
    odd = {"activation-token": GLib.Variant("u", 1), "parent-window": GLib.Variant("s", "x" * 100_000),
           "unknown": GLib.Variant("a{sv}", {})}
    manager.call("Activate", "(suasa{sv})", "template:note", 1, [uri(desktop.home.demo)], odd)
    assert wait_until(lambda: manager.shown)[0][1] == ""


def test_what_was_large_stays_once(desktop, manager):
    manager.menu()
    before, size = held(manager.extension_process()), 21_000_000
    for _ in range(3):
        assert manager.refusal_of("Activate", "(suasa{sv})", "x" * size, 1, [uri(desktop.home.path)], {}) == "InvalidArgs"
    for item in (template("Large", content="x" * size), template("Small")):
        desktop.home.configure(item)
        wait_until(lambda: first(manager) == f"template:{item['id']}")
    # The buffer of the bus library, and the template that an older menu offers.
    desktop.stays_flat(manager.extension_process(), before._replace(memory=before.memory + 2 * size // 1000))


def test_menus_and_picks_in_great_numbers_leave_nothing_but_their_files(desktop, manager):
    demo, rounds = desktop.home.demo, 5 * int(os.environ.get("SPRIG_FIRE", "1"))
    desktop.home.configure(template("Note", content="whole"), defaultBehavior="never")
    questions = [GLib.Variant("(uasa{sv})", (kind, [uri(demo)], {})) for kind in range(4)] * 5
    answers = manager.answers("GetMenu", questions)
    process = manager.extension_process()
    for number in range(rounds):
        (demo / str(number)).mkdir()
        for pick in range(20):
            assert all(map(GLib.Variant.equal, manager.answers("GetMenu", questions), answers))
            visitor = FileManager(desktop.address)
            visitor.menu(pick % 4, demo)
            visitor.leaves()
            manager.pick("template:note", demo / str(number))
        wait_until(lambda: len(manager.shown) == 20 * (number + 1))
        if number == rounds // 10:
            before = held(process)
    print(f"{20 * rounds} times 21 menus and a pick; {before} became {held(process)}")
    desktop.stays_flat(process, before)
    names = ["Note.txt", *(f"Note {number}.txt" for number in range(2, 21))]
    assert {file.relative_to(demo): file.read_text() for file in demo.glob("*/*")} == {
        pathlib.Path(str(number), name): "whole" for number in range(rounds) for name in names}


def test_a_killed_extension_is_there_again_for_the_next_call(desktop, manager):
    desktop.home.configure(template("Note"), defaultBehavior="never")
    manager.menu()
    killed = manager.extension_process()
    os.kill(killed, signal.SIGKILL)
    wait_until(lambda: manager.extension_process() != killed)
    # The menu is from the process before; the new one has offered nothing yet.
    manager.pick("template:note", desktop.home.demo)
    wait_until(lambda: manager.shown)
    assert manager.extension_process() != killed


def test_without_a_bus_the_program_ends_and_says_why(home):
    result = home.run(DBUS_SESSION_BUS_ADDRESS="unix:path=/nowhere")
    assert result.returncode == 0
    assert "Can't connect to the session bus" in result.stderr + journal()


def test_a_second_instance_leaves_the_name_to_the_first(desktop, manager):
    manager.menu()
    process = manager.extension_process()
    assert desktop.home.run(DBUS_SESSION_BUS_ADDRESS=desktop.address).returncode == 0
    assert manager.extension_process() == process


def test_no_toolkit_is_linked():
    libraries = subprocess.run(["ldd", PROGRAM], capture_output=True, text=True, check=True).stdout
    assert "libgio" in libraries
    assert [word for word in ("libgtk", "libgdk", "Qt", "libX11", "libwayland") if word in libraries] == []


def test_picks_wait_for_the_open_prompt_which_comes_to_the_front(scripted):
    desktop = scripted(60_000)
    demo = desktop.home.demo
    desktop.home.configure(template("A"), template("B"), template("C"))
    first, second = desktop.manager(), desktop.manager()
    first.pick("template:a", demo, activation_token="1", parent_window="x11:1a")
    desktop.user_sees("shows New A|1|x11:1a")
    second.pick("template:b", demo, activation_token="2", parent_window="wayland:w")
    desktop.user_sees("comes to the front 2")
    second.pick("template:c", demo)
    assert second.menu()[1][2] == "template:a"
    assert not any("New B" in line for line in desktop.printed())
    process = first.extension_process()
    os.kill(process, signal.SIGUSR1)
    desktop.user_sees("shows New B|2|wayland:w")
    wait_until(lambda: first.shown)
    os.kill(process, signal.SIGUSR2)
    desktop.user_sees("shows New C||")
    os.kill(process, signal.SIGUSR1)
    wait_until(lambda: second.shown)
    assert [shown for shown, _ in first.shown + second.shown] == [[uri(demo / "A.txt")], [uri(demo / "C.txt")]]
    assert sorted(path.name for path in demo.iterdir()) == ["A.txt", "C.txt"]


def test_an_alert_belongs_to_its_pick_and_the_next_one_waits_for_it(scripted):
    desktop = scripted(60_000)
    desktop.home.configure(template("A"), template("B"), defaultBehavior="never")
    manager = desktop.manager()
    manager.pick("template:a", desktop.home.path / "gone", parent_window="x11:1")
    desktop.user_sees("shows Couldn't create the file.||x11:1")
    manager.pick("template:b", desktop.home.demo, activation_token="2")
    desktop.user_sees("comes to the front 2")
    assert list(desktop.home.demo.iterdir()) == []
    os.kill(manager.extension_process(), signal.SIGUSR1)
    wait_until(lambda: manager.shown)


def test_too_many_waiting_picks_are_refused(scripted):
    desktop = scripted(60_000)
    desktop.home.configure(template("A"))
    manager = desktop.manager()
    manager.pick("template:a", desktop.home.demo)
    desktop.user_sees("shows New A||")
    for _ in range(100):
        manager.pick("template:a", desktop.home.demo)
    assert manager.refusal_of("Activate", "(suasa{sv})", "template:a", 1, [uri(desktop.home.demo)], {}) == "Failed"


def test_it_leaves_when_the_last_client_has_gone_for_a_while_but_not_before(scripted):
    desktop = scripted(100)
    watcher, first, second = FileManager(desktop.address), desktop.manager(), desktop.manager()
    first.menu()
    second.menu()
    process = watcher.extension_process()
    first.leaves()
    goes_on_for(500)
    assert watcher.extension_process() == process
    second.leaves()
    wait_until(lambda: watcher.extension_process() is None)
    wait_until(lambda: not pathlib.Path("/proc", str(process)).exists())


def test_it_does_not_leave_before_what_the_user_is_asked_for_is_done(scripted):
    desktop = scripted(300)
    notes = desktop.handler("inode/directory")
    desktop.home.configure(template("A"))
    watcher, manager = FileManager(desktop.address), desktop.manager()
    manager.pick("template:a", desktop.home.demo)
    desktop.user_sees("shows New A||")
    process = watcher.extension_process()
    manager.leaves()
    goes_on_for(500)
    os.kill(process, signal.SIGUSR1)
    # The window that was clicked in has gone meanwhile, and no file manager runs.
    wait_until(lambda: notes.exists() and notes.read_text() == f" {desktop.home.demo}\n")
    wait_until(lambda: watcher.extension_process() is None)


def test_an_upgraded_program_ends_between_two_picks_and_the_next_call_starts_the_new_one(home, start):
    program = home.path / "sprig-extension"
    shutil.copy(os.environ["SPRIG_SCRIPTED"], program)
    desktop = start(program)
    home.configure(template("A"))
    manager = desktop.manager()
    manager.pick("template:a", home.demo)
    desktop.user_sees("shows New A||")
    process = manager.extension_process()
    shutil.copy(program, home.path / "new")
    (home.path / "new").replace(program)
    goes_on_for(1200)
    assert manager.extension_process() == process
    os.kill(process, signal.SIGUSR1)
    wait_until(lambda: manager.shown)
    wait_until(lambda: manager.extension_process() is None)
    assert len(manager.menu()) == 4 and manager.extension_process() != process


def test_every_call_is_answered_while_the_extension_comes_and_goes(scripted):
    desktop = scripted(0)
    desktop.home.configure(template("Note", filenamePattern="{{name}}.txt"), defaultBehavior="never")
    for _ in range(150):
        visitor = FileManager(desktop.address)
        assert len(visitor.menu()) == 4
        visitor.pick("template:note", desktop.home.demo)
        visitor.leaves()
    # By the log: a process that leaves and the one after it may settle on the same free name.
    wait_until(lambda: len(lines(desktop.home, "templateAction SUCCESS")) == 150)
    # Each process loads the configuration once.
    assert len(lines(desktop.home, "Loaded config with")) > 10
    # The bus stays until the last process has given its name back, which it couldn't any more without it.
    last = desktop.manager()
    wait_until(lambda: last.extension_process() is None)
