# SPDX-License-Identifier: GPL-3.0-or-later
"""A throw-away home, and Sprig run in it."""

import contextlib
import glob
import json
import os
import pathlib
import shutil
import subprocess
import tempfile

from sprigtest.waiting import DEADLINE, wait_for

SOURCE = pathlib.Path(__file__).parents[3]
NOBODY = 65534
# The built-in templates that a menu has without another one below it.
BUILTINS = ["Markdown Note", "Plain Text", "Meeting Notes", "Daily To-Do List", "React Component", "TypeScript Module",
            "Python Script", "JSON File", ".env Config", "Word Document"]


def need(tool, package):
    """The tool's path. A machine without it can't run these tests, which must show."""
    found = shutil.which(tool)
    assert found, f"{tool} is missing: install the Debian package {package}"
    return found


def template(name, **changes):
    item = {"id": name.lower().replace(" ", "-"), "name": name, "extension": ".txt", "filenamePattern": f"{name}.txt",
            "content": f"{name} in {{{{folder}}}}\n", "icon": "doc", "category": "notes", "enabled": True,
            "favorite": False, "requiresInput": False, "isBuiltin": False}
    return {**item, **changes}


class Home:
    """The home folder of a user called Ann, who works in its folder "demo"."""

    def __init__(self, root):
        self.path = pathlib.Path(root)
        self.demo = self.path / "demo"
        self.demo.mkdir()
        self.config = self.path / ".config/sprig/config.json"
        self.log = self.path / ".kestrel/sprig/extension.log"
        self.program = pathlib.Path(os.environ.get("SPRIG_PROGRAM", SOURCE / "build/bin/sprig")).resolve()
        users = [f"ann{uid}:x:{uid}:{uid}:Ann Example:{root}:/bin/sh" for uid in {os.getuid(), NOBODY}]
        self.write(".passwd", "\n".join(users) + "\n")
        self.write(".group", "ann:x:0:\n")
        self.write(".tsan", "mutex:libnss_wrapper.so\nrace:libnss_wrapper.so\n")
        wrapper = glob.glob("/usr/lib/*/libnss_wrapper.so")
        assert wrapper, "libnss_wrapper.so is missing: install the Debian package libnss-wrapper"
        self.environment = {
            "LD_PRELOAD": wrapper[0], "NSS_WRAPPER_PASSWD": str(self.path / ".passwd"),
            "NSS_WRAPPER_GROUP": str(self.path / ".group"), "HOME": str(root), "USER": "ann", "TZ": "UTC",
            "PATH": f"{self.program.parent}:/usr/bin:/bin", "TERM": "xterm", "LANG": "C.UTF-8", "NO_COLOR": "1",
            # The preloaded library comes before the sanitizers' own, so that its locks escape them.
            "ASAN_OPTIONS": "verify_asan_link_order=0",
            "TSAN_OPTIONS": f"suppressions={self.path}/.tsan"}

    def env(self, changes):
        merged = {**self.environment, **changes}
        return {key: value for key, value in merged.items() if value is not None}

    def speaking(self, locale):
        """What the environment of people has who speak its language. The locale is made, as few systems have many."""
        assert os.path.isdir("/usr/share/i18n"), "there is nothing to make locales of: install the Debian package locales"
        folder = self.path / "locales"
        folder.mkdir(exist_ok=True)
        subprocess.run(["localedef", "-i", locale, "-f", "UTF-8", folder / f"{locale}.UTF-8"], check=True)
        # What the C library makes of LOCPATH it keeps for ever.
        self.write(".lsan", "leak:argz_add_sep\n")
        return {"LOCPATH": str(folder), "LC_ALL": f"{locale}.UTF-8",
                "LSAN_OPTIONS": f"suppressions={self.path}/.lsan:print_suppressions=0"}

    def write(self, name, text):
        """Writes a file whole, as editors do: nobody sees a half of it."""
        file = self.path / name
        file.parent.mkdir(parents=True, exist_ok=True)
        whole = self.path / ".whole"
        whole.write_text(text, encoding="utf-8")
        return whole.replace(file)

    def configure(self, *templates, **settings):
        self.write(self.config, json.dumps({"version": 1, "settings": settings, "templates": list(templates)}))

    def logged(self, text):
        return self.log.exists() and text in self.log.read_text()

    def run(self, *arguments, **options):
        """Runs Sprig in pipes."""
        return self.run_command(self.program, *arguments, **options)

    def run_shell(self, script, **options):
        """Runs a shell's commands, for which Sprig is "$0"."""
        return self.run_command("sh", "-c", script, self.program, **options)

    def run_command(self, *command, cwd=None, stdin="", **environment):
        """Standard input is closed after `stdin`."""
        return subprocess.run(command, cwd=cwd or self.demo, env=self.env(environment), input=stdin, text=True,
                              capture_output=True, timeout=DEADLINE)


def remove(folder):
    shutil.rmtree(folder, ignore_errors=True)
    return not os.path.exists(folder)


@contextlib.contextmanager
def throw_away_home(kind=Home):
    root = tempfile.mkdtemp(prefix="sprig-home-")
    os.chmod(root, 0o755)
    try:
        yield kind(root)
    finally:
        # What was started in it may still be about to end, and write.
        wait_for(lambda: remove(root), "the home to go")
