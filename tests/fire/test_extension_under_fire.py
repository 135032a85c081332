# SPDX-License-Identifier: GPL-3.0-or-later
"""The running extension while its configuration changes all the time, and when much is asked of it."""

import multiprocessing
import os
import pathlib
import re
import statistics
import time

import pytest
import saves
from conftest import FIRE
from gi.repository import GLib
from sprigtest.bus import Desktop, FileManager, held, uri, wait_until
from sprigtest.home import template


@pytest.fixture
def desktop(home):
    session = Desktop(home, os.environ["SPRIG_EXTENSION"])
    yield session
    session.ends()


def number_of(rows):
    """The number, up to a hundred, of the document that a menu shows the whole of; None for the built-in templates."""
    found = [row[3] for row in rows if row[2].startswith("template:")]
    if found[0] == "Markdown Note" and len(found) == 11:
        return None
    number = int(re.match("Of ([0-9]+)", found[0])[1])
    assert found == saves.templates(number)
    return number


def test_every_menu_is_of_one_whole_document_and_the_last_one_wins(desktop):
    desktop.home.write(desktop.home.config, saves.document(0).decode())
    managers = [desktop.manager(), desktop.manager()]
    managers[0].menu()
    process = managers[0].extension_process()
    seen, waits, before = [], [], None
    for last in range(20 * FIRE, 201 * FIRE, 20 * FIRE):
        numbers = range(last - 20 * FIRE + 1, last + 1)
        writer = multiprocessing.get_context("spawn").Process(target=saves.save_all, args=(desktop.home.config, numbers))
        writer.start()
        while writer.is_alive():
            seen += [number_of(manager.menu()) for manager in managers]
        begin = time.monotonic()
        wait_until(lambda: number_of(managers[0].menu()) == last % 100)
        waits.append(time.monotonic() - begin)
        before = before or held(process)
        assert writer.exitcode == 0
    print(f"{last} saves, {len(seen)} menus meanwhile, of {len(set(seen))} documents; the last one showed after"
          f" {max(waits) * 1000:.0f} ms at most; {before} became {held(process)}")
    assert len(set(seen)) > 5 and max(waits) < 1
    desktop.stays_flat(process, before)


def test_a_document_of_40_mib_keeps_nobody_waiting(desktop):
    desktop.home.configure(template("Small"))
    manager = desktop.manager()
    manager.menu()
    process, before, longest, loads = manager.extension_process(), held(manager.extension_process()), [], []
    for number in range(3 + FIRE // 10):
        large = {**template(f"T{number}"), "unknown": [1] * (40 * 2**20 // 3)}
        desktop.home.configure(large)
        begin, waits, shown = time.monotonic(), [], None
        while shown != f"template:t{number}":
            asked = time.monotonic()
            shown = manager.menu()[1][2]
            waits.append(time.monotonic() - asked)
        longest.append(max(waits))
        loads.append(time.monotonic() - begin)
    print(f"{len(loads)} documents, the fastest shown after {min(loads) * 1000:.0f} ms; the longest wait for a menu was"
          f" {min(longest) * 1000:.0f} to {max(longest) * 1000:.0f} ms; {before} became {held(process)}")
    # What file managers wait; one save, as others may be at work.
    assert min(longest) < 0.15
    desktop.stays_flat(process, before)


def report(what, times, before, after):
    tenth = len(times) // 10
    begin, end = (statistics.median(part) * 1000 for part in (times[:tenth], times[-tenth:]))
    print(f"{len(times)} {what}, {begin:.2f} ms at first, {end:.2f} ms at the end; {before} became {after}")


def test_many_menu_requests_leave_no_trace(desktop):
    manager = desktop.manager()
    questions = [GLib.Variant("(uasa{sv})", (kind, [uri(desktop.home.demo)], {})) for kind in range(4)] * 5
    answers = manager.answers("GetMenu", questions)
    process, times = manager.extension_process(), []
    for index in range(500 * FIRE):
        begin = time.perf_counter()
        again = manager.answers("GetMenu", questions)
        times.append(time.perf_counter() - begin)
        visitor = FileManager(desktop.address)
        visitor.menu(index % 4, desktop.home.demo)
        visitor.leaves()
        assert all(answer.equal(first) for answer, first in zip(again, answers))
        if index == 50 * FIRE:
            before = held(process)
    report("times 20 menus", times, before, held(process))
    desktop.stays_flat(process, before)


def test_many_picks_leave_nothing_but_their_files(desktop):
    desktop.home.configure(template("Note"), defaultBehavior="never")
    manager = desktop.manager()
    manager.menu()
    process, times = manager.extension_process(), []
    for index in range(100 * FIRE):
        folder = desktop.home.demo / str(index // 100)
        folder.mkdir(exist_ok=True)
        begin = time.perf_counter()
        manager.pick("template:note", folder)
        wait_until(lambda: len(manager.shown) > index)
        times.append(time.perf_counter() - begin)
        if index == 10 * FIRE:
            before = held(process)
    report("picks", times, before, held(process))
    desktop.stays_flat(process, before)
    made = {file.relative_to(desktop.home.demo): file.read_text() for file in desktop.home.demo.glob("*/*")}
    ends = ["", *(f" {number}" for number in range(2, 101))]
    assert made == {pathlib.Path(str(folder), f"Note{end}.txt"): f"Note in {folder}\n"
                    for folder in range(FIRE) for end in ends}
