# SPDX-License-Identifier: GPL-3.0-or-later
"""A session bus of its own, on which the extension is started as it is on a desktop, and file managers around it."""

import collections
import functools
import pathlib
import subprocess

import gi
from gi.repository import Gio, GLib

from sprigtest.waiting import DEADLINE, wait_for

gi.require_version("Gio", "2.0")

NAME = "com.kestrel.Sprig.Extension"
PATH = "/com/kestrel/Sprig/Extension"
INTERFACE = "com.kestrel.Sprig.Extension1"
BUS = """<busconfig><type>session</type><listen>unix:dir={root}</listen><servicedir>{root}/services</servicedir>
<policy context="default"><allow send_destination="*" eavesdrop="true"/><allow eavesdrop="true"/><allow own="*"/>
</policy></busconfig>"""


def bus_interface(name, methods):
    """An interface of the bus: its methods by their names, with the types of what they take and of what they return."""
    described = ""
    for method, types in methods.items():
        arguments = [f'<arg type="{kind}" direction="{way}"/>' for way, kinds in zip(("in", "out"), types) for kind in kinds]
        described += f'<method name="{method}">{"".join(arguments)}</method>'
    return Gio.DBusNodeInfo.new_for_xml(f'<node><interface name="{name}">{described}</interface></node>').interfaces[0]


FILE_MANAGER = bus_interface("org.freedesktop.FileManager1", {"ShowItems": [["as", "s"]]})
THUNAR = bus_interface("org.xfce.FileManager", {"DisplayFolderAndSelect": ["ssss"]})
APPLICATION = bus_interface("org.freedesktop.Application", {"Open": [["as", "a{sv}"]]})


def turn():
    """Lets the file managers of the test answer."""
    wake = GLib.timeout_add(5, lambda: GLib.SOURCE_CONTINUE)
    GLib.MainContext.default().iteration(True)
    GLib.source_remove(wake)


wait_until = functools.partial(wait_for, between=turn)


def goes_on_for(milliseconds):
    over = []
    GLib.timeout_add(milliseconds, lambda: over.append(True))
    wait_until(lambda: over)


class FileManager:
    """A program on the bus that asks for menus and picks, and that may show files."""

    def __init__(self, address, shows_items=True):
        flags = Gio.DBusConnectionFlags
        self.connection = Gio.DBusConnection.new_for_address_sync(
            address, flags.AUTHENTICATION_CLIENT | flags.MESSAGE_BUS_CONNECTION, None, None)
        self.shown = []
        self.changes = []
        self.served = None
        self.refusal = None
        if shows_items:
            self.connection.register_object("/org/freedesktop/FileManager1", FILE_MANAGER, self._show_items)
        self.connection.signal_subscribe(NAME, INTERFACE, "MenuChanged", PATH, None, Gio.DBusSignalFlags.NONE,
                                         lambda *signal: self.changes.append(signal[5].unpack()[0]))
        self.connection.signal_subscribe(NAME, "org.freedesktop.DBus.Properties", "PropertiesChanged", PATH, INTERFACE,
                                         Gio.DBusSignalFlags.NONE, self._properties_changed)

    def _properties_changed(self, *signal):
        self.served = signal[5].unpack()[1]["ServedFolders"]

    def _show_items(self, _connection, _sender, _path, _interface, _method, parameters, invocation):
        self.shown.append(parameters.unpack())
        if self.refusal:
            invocation.return_dbus_error(self.refusal, "refused")
        else:
            invocation.return_value(None)

    def call(self, method, signature="()", *arguments, interface=INTERFACE, to=(NAME, PATH)):
        answer = self.connection.call_sync(*to, interface, method, GLib.Variant(signature, arguments), None,
                                           Gio.DBusCallFlags.NONE, DEADLINE * 1000, None)
        return answer.unpack()

    def answers(self, method, questions):
        """Asks without waiting in between."""
        answers = []
        for question in questions:
            self.connection.call(NAME, PATH, INTERFACE, method, question, None, Gio.DBusCallFlags.NONE, DEADLINE * 1000,
                                 None, lambda connection, result: answers.append(connection.call_finish(result)))
        wait_until(lambda: len(answers) == len(questions))
        return answers

    def refusal_of(self, method, signature, *arguments, **destination):
        """The last part of the error's name that a call gets; None when it is answered."""
        try:
            self.call(method, signature, *arguments, **destination)
        except GLib.Error as error:
            return Gio.DBusError.get_remote_error(error).rsplit(".", 1)[1]
        return None

    def bus(self, method, *names):
        return self.call(method, f"({'s' * len(names)})", *names, interface="org.freedesktop.DBus",
                         to=("org.freedesktop.DBus", "/org/freedesktop/DBus"))[0]

    def own(self, name):
        self.call("RequestName", "(su)", name, 0, interface="org.freedesktop.DBus",
                  to=("org.freedesktop.DBus", "/org/freedesktop/DBus"))
        return self

    def asked_of(self, name, interface=APPLICATION):
        """What this is asked from now on as the application of that name."""
        calls = []

        def answer(_connection, _sender, _path, _interface, _method, parameters, invocation):
            calls.append(parameters.unpack())
            invocation.return_value(None)
        self.own(name).connection.register_object("/" + name.replace(".", "/"), interface, answer)
        return calls

    def menu(self, kind=1, *targets):
        """The rows, without the revision."""
        return rows_in(self.call("GetMenu", "(uasa{sv})", kind, [uri(target) for target in targets], {})[1])

    def pick(self, action, folder, kind=1, **platform_data):
        data = {key.replace("_", "-"): GLib.Variant("s", value) for key, value in platform_data.items()}
        return self.call("Activate", "(suasa{sv})", action, kind, [uri(folder)], data)

    def property(self, name):
        return self.call("Get", "(ss)", INTERFACE, name, interface="org.freedesktop.DBus.Properties")[0]

    def extension_process(self):
        """The process that answers to the name; None when there is none."""
        try:
            return self.bus("GetConnectionUnixProcessID", NAME)
        except GLib.Error:
            return None

    def leaves(self):
        self.connection.close_sync(None)


def rows_in(answer):
    """The rows that the bytes of a menu are."""
    return GLib.Variant.new_from_bytes(GLib.VariantType("a(iussssb)"), GLib.Bytes(bytes(answer)), False).unpack()


def uri(path):
    return path if isinstance(path, str) else GLib.filename_to_uri(str(path), None)


Held = collections.namedtuple("Held", "memory descriptors threads")


def held(process):
    """What a process has of its own: memory in kB, open descriptors, threads."""
    proc = pathlib.Path("/proc", str(process))
    memory = [line for line in (proc / "smaps_rollup").read_text().splitlines() if line.startswith("Private_Dirty")]
    return Held(int(memory[0].split()[1]), len(list((proc / "fd").iterdir())), len(list((proc / "task").iterdir())))


class Desktop:
    """The bus, in the home folder of Ann."""

    def __init__(self, home, command, program=None, **environment):
        self.home = home
        self.output = home.path / "output"
        self.program = program or command
        services = home.path / "services"
        services.mkdir()
        (services / f"{NAME}.service").write_text(f"[D-BUS Service]\nName={NAME}\nExec={command}\n")
        configuration = home.path / "bus.conf"
        configuration.write_text(BUS.format(root=home.path))
        daemon = ["dbus-daemon", f"--config-file={configuration}", "--nofork", "--nopidfile", "--print-address=1"]
        environment = home.env({"XDG_DATA_DIRS": "/usr/share", "GIO_USE_VFS": "local", **environment})
        with open(self.output, "wb") as output:
            self.daemon = subprocess.Popen(daemon, env=environment, stdout=subprocess.PIPE, stderr=output, text=True)
        self.address = self.daemon.stdout.readline().strip()
        self.managers = []
        (home.path / ".local/share/applications").mkdir(parents=True)

    def manager(self, **options):
        self.managers.append(FileManager(self.address, **options))
        return self.managers[-1]

    def handler(self, mime_type):
        """A program for a type that notes what it is started with; where it does."""
        notes = self.home.path / mime_type.replace("/", "-")
        entries = self.home.path / ".local/share/applications"
        (entries / f"{notes.name}.desktop").write_text(
            "[Desktop Entry]\nType=Application\nName=Handler\n"
            f"Exec=sh -c 'echo \"$DESKTOP_STARTUP_ID\" \"$0\" >> {notes}' %u\nMimeType={mime_type};\n")
        (entries / "mimeapps.list").write_text(f"[Default Applications]\n{mime_type}={notes.name}.desktop\n")
        return notes

    def printed(self):
        return self.output.read_text(errors="replace").splitlines()

    def stays_flat(self, process, before):
        """Has the extension come back to what it held before, give or take a descriptor (a watch), a thread (of GLib's)
        and a megabyte."""
        wait_until(lambda: all(now <= then + 1 for now, then in zip(held(process)[1:], before[1:])))
        # A sanitizer keeps for a while what was freed.
        if b"__asan_init" not in pathlib.Path(self.program).read_bytes():
            wait_until(lambda: held(process).memory < before.memory + 1_000)

    def user_sees(self, text):
        wait_until(lambda: text in self.printed())

    def ends(self):
        self.daemon.terminate()
        self.daemon.wait()
        faults = ("Sanitizer", "runtime error", "CRITICAL", "WARNING **", "terminate called")
        with open(self.output, errors="replace") as lines:
            found = [line for line in lines if any(fault in line for fault in faults)]
            assert not found, found
