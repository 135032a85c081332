"""A throw-away home for every test, and ways to run Sprig in it."""

import glob
import json
import os
import pathlib
import pwd
import shutil
import subprocess
import tempfile
import time

import pexpect
import pytest

SOURCE = pathlib.Path(os.environ.get("SPRIG_SOURCE", pathlib.Path(__file__).parents[2]))
DEADLINE = int(os.environ.get("SPRIG_DEADLINE", "20"))  # seconds; a sanitized program on a busy machine is slow
NOBODY = 65534


def need(tool, package):
    """The tool's path. A machine without it can't run these tests, which must show."""
    found = shutil.which(tool)
    assert found, f"{tool} is missing: install the Debian package {package}"
    return found


def wait_until(condition):
    end = time.monotonic() + DEADLINE
    while not condition():
        assert time.monotonic() < end, "waited too long"
        time.sleep(0.005)


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
        (self.path / ".passwd").write_text("\n".join(users) + "\n")
        (self.path / ".group").write_text("ann:x:0:\n")
        (self.path / ".tsan").write_text("mutex:libnss_wrapper.so\nrace:libnss_wrapper.so\n")
        wrapper = glob.glob("/usr/lib/*/libnss_wrapper.so")
        assert wrapper, "libnss_wrapper.so is missing: install the Debian package libnss-wrapper"
        self.environment = {
            "LD_PRELOAD": wrapper[0], "NSS_WRAPPER_PASSWD": str(self.path / ".passwd"),
            "NSS_WRAPPER_GROUP": str(self.path / ".group"), "HOME": root, "USER": "ann", "TZ": "UTC",
            "PATH": f"{self.program.parent}:/usr/bin:/bin", "TERM": "xterm", "LANG": "C.UTF-8", "NO_COLOR": "1",
            # The preloaded library comes before the sanitizers' own, so that its locks escape them.
            "ASAN_OPTIONS": "verify_asan_link_order=0",
            "TSAN_OPTIONS": f"suppressions={self.path}/.tsan"}

    def env(self, changes):
        merged = {**self.environment, **changes}
        return {key: value for key, value in merged.items() if value is not None}

    def configure(self, *templates, **settings):
        self.config.parent.mkdir(parents=True, exist_ok=True)
        document = {"version": 1, "settings": settings, "templates": list(templates)}
        # Replaced whole, as editors do: nobody sees a half of it.
        whole = self.path / ".config.json"
        whole.write_text(json.dumps(document))
        whole.replace(self.config)

    def run(self, *arguments, cwd=None, stdin="", **environment):
        """Runs Sprig in pipes; standard input is closed after `stdin`."""
        return subprocess.run([self.program, *arguments], cwd=cwd or self.demo, env=self.env(environment),
                              input=stdin, text=True, capture_output=True, timeout=DEADLINE)

    def spawn(self, *command, cwd=None, **environment):
        """Runs a command at a terminal of 24 lines and 80 columns."""
        return pexpect.spawn(str(command[0]), [str(argument) for argument in command[1:]], cwd=str(cwd or self.demo),
                             env=self.env(environment), encoding="utf-8", timeout=DEADLINE, dimensions=(24, 80))

    def sprig(self, *arguments, **options):
        """Runs Sprig at a terminal, its standard output in a file."""
        command = 'trap : INT HUP; "$@" > "$HOME/.out"; echo "status=$?"; stty -a'
        return Session(self, self.spawn("/bin/sh", "-c", command, "sh", self.program, *arguments, **options))

    def printed(self):
        return (self.path / ".out").read_text()

    def run_as_ordinary_user(self, *arguments):
        """As `run`, without the rights of root."""
        if os.getuid() != 0:
            return self.run(*arguments)
        program = self.path / "sprig"
        shutil.copy(self.program, program)
        command = ["setpriv", f"--reuid={NOBODY}", f"--regid={NOBODY}", "--clear-groups", program, *arguments]
        return subprocess.run(command, cwd=self.demo, env=self.env({}), text=True, capture_output=True,
                              timeout=DEADLINE)


class Session:
    """Sprig at a terminal, and the user in front of it."""

    def __init__(self, home, child):
        self.home = home
        self.child = child
        self.child.delaybeforesend = None

    def sees(self, *texts):
        for text in texts:
            self.child.expect_exact(text)
        return self

    def types(self, text):
        self.child.send(text)
        return self

    def at_menu(self):
        return self.sees("leave.", "> ")

    def ends(self, status):
        """The exit status, with the terminal as it was before."""
        self.sees(f"status={status}\r\n", " icanon", " echo ")
        self.child.expect(pexpect.EOF)
        return self.home.printed()


@pytest.fixture
def home():
    with tempfile.TemporaryDirectory(prefix="sprig-e2e-") as root:
        os.chmod(root, 0o755)
        yield Home(root)
