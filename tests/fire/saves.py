# SPDX-License-Identifier: GPL-3.0-or-later
"""Saves a configuration again and again, by every method that editors use."""

import json
import os
import pathlib
import shutil

from sprigtest.home import template


def templates(number):
    """The names of a document's templates, which tell its number up to a hundred; how many they are does as well."""
    return [f"Of {number % 100}, {index}" for index in range(number % 5 + 1)]


def document(number):
    items = [template(name) for name in templates(number)]
    text = json.dumps({"version": 1, "settings": {"defaultBehavior": "never"}, "templates": items})
    # All but the end stands within the first block, which nobody reads by halves.
    return (text[:-1] + " " * (20_000 + number % 7 * 1_000) + "}").encode()


def save(file, data, flags=os.O_TRUNC):
    """In one write, and on the disk, as editors do."""
    descriptor = os.open(file, os.O_WRONLY | os.O_CREAT | flags, 0o666)
    os.write(descriptor, data)
    os.ftruncate(descriptor, os.lseek(descriptor, 0, os.SEEK_CUR))
    os.fsync(descriptor)
    os.close(descriptor)


def save_in_place(file, data):
    save(file, data, flags=0)


def save_beside_and_rename(file, data):
    save(f"{file}.new", data)
    os.rename(f"{file}.new", file)


def move_away_and_create(file, data):
    os.rename(file, f"{file}~")
    save(file, data)


def delete_and_create(file, data):
    os.unlink(file)
    save(file, data)


def swap_link(file, data):
    target = f"{file}.{len(data) % 2}"
    save(target, data)
    pathlib.Path(f"{file}.link").symlink_to(target)
    os.rename(f"{file}.link", file)


def save_by_halves(file, data):
    save(file, data[:len(data) // 2])
    save(file, data[len(data) // 2:], flags=os.O_APPEND)


def delete_target_and_create(file, data):
    target = os.path.realpath(file)
    os.unlink(target)
    save(target, data)


def replace_folder(file, data):
    folder = pathlib.Path(file).parent
    folder.rename(f"{folder}.old")
    folder.mkdir()
    save(file, data)
    shutil.rmtree(f"{folder}.old")


def move_folder_away_and_back(file, data):
    folder = pathlib.Path(file).parent
    away = folder.rename(f"{folder}.away")
    for name in os.listdir(away):
        os.unlink(away / name)
    save(away / pathlib.Path(file).name, data)
    away.rename(folder)


METHODS = [save_in_place, save, save_beside_and_rename, move_away_and_create, delete_and_create, swap_link,
           delete_target_and_create, save_by_halves, replace_folder, save_in_place, move_folder_away_and_back]


def save_all(file, numbers):
    for number in numbers:
        METHODS[number % len(METHODS)](file, document(number))
