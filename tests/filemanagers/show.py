"""Shows Sprig in a file manager, with a home folder that is thrown away afterwards: on the display that is there, until
the file manager is closed; or else on one of its own, as pictures.

Usage: session.sh MODULES SYSTEM-FOLDER show.py MANAGER PICTURES
"""

import collections
import os
import pathlib
import shutil
import sys
import tempfile

from PIL import ImageGrab

from driving import PROFILES, Desktop, FileManager, wait_for

ICONS = pathlib.Path(__file__).resolve().parents[2] / "packaging/icons"


def furnish(desktop):
    """What is installed otherwise, and a folder to work in."""
    for kind in ("scalable", "symbolic"):
        shutil.copytree(ICONS / kind, desktop.home / f".local/share/icons/hicolor/{kind}/apps")
    folder = desktop.home / "Projects"
    (folder / "Pictures").mkdir(parents=True)
    (folder / "letter.txt").write_text("Dear reader,\n", encoding="utf-8")
    return folder


def show(desktop, manager, folder):
    for name in ("DISPLAY", "XAUTHORITY"):
        if name in os.environ:
            desktop.environment[name] = os.environ[name]
    desktop.environment["DBUS_SESSION_BUS_ADDRESS"] = desktop.announcing(
        "dbus-daemon", "--session", "--nofork", "--print-address={}")
    print(f"Showing {folder} in {manager}; everything in it goes when its window is closed.", flush=True)
    desktop.launch(*(word.format(folder) for word in PROFILES[manager].command)).wait()


def still_screen(desktop):
    """What is on the screen once it has been the same a few times."""
    looks = collections.deque(maxlen=8)

    def look():
        looks.append(ImageGrab.grab(xdisplay=desktop.environment["DISPLAY"]))
        return len(looks) == looks.maxlen and all(other == looks[0] for other in looks)
    wait_for(look, "the screen to stay the same")
    return looks[0]


def picture(desktop, manager, folder, pictures):
    """The menu, the question for a name, and the file that is there afterwards."""
    def take(subject):
        file = pictures / f"{manager}-{subject}.png"
        still_screen(desktop).save(file)
        print(file, flush=True)
    desktop.start()
    window = FileManager(desktop, manager, folder)
    window.row("letter.txt")
    window.open_menu(window.background())
    window.pick("Sprig")
    window.submenu("Sprig")
    take("menu")
    window.pick("Meeting Notes")
    desktop.dialog("New Meeting Notes")
    take("name")
    desktop.press("Return")
    made = wait_for(lambda: list(folder.glob("Meeting Notes*")), "the file")[0]
    window.row(made.name)
    take("file")
    window.stop()


def main():
    manager, pictures = sys.argv[1], pathlib.Path(sys.argv[2])
    if manager not in PROFILES:
        sys.exit(f"{manager} can't be shown yet; these can: {', '.join(PROFILES)}")
    home = pathlib.Path(tempfile.mkdtemp(prefix="sprig-desktop-"))
    desktop = Desktop(home)
    try:
        folder = furnish(desktop)
        if os.environ.get("DISPLAY"):
            show(desktop, manager, folder)
        else:
            pictures.mkdir(parents=True, exist_ok=True)
            picture(desktop, manager, folder, pictures)
    finally:
        desktop.stop()
        shutil.rmtree(home)


main()
