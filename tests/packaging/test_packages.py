# SPDX-License-Identifier: GPL-3.0-or-later
"""The Debian packages: what they hold, what they need, and that they go as they came."""

import email
import fnmatch
import json
import os
import pathlib
import re
import shutil
import subprocess
import xml.etree.ElementTree

import pytest

BUILD = pathlib.Path(os.environ.get("SPRIG_BUILD", pathlib.Path(__file__).parents[2] / "build")).resolve()
SOURCE = pathlib.Path(__file__).parents[2]
MANAGERS = sorted(folder.name for folder in (BUILD / "modules").iterdir())
AS_ROOT = [] if os.geteuid() == 0 else ["unshare", "--user", "--map-root-user"]
TOOLS = {"dpkg-shlibdeps": "dpkg-dev", "lintian": "lintian", "appstreamcli": "appstream",
         "desktop-file-validate": "desktop-file-utils", "rpmspec": "rpm", "systemctl": "dbus-user-session", "gdbus": "libglib2.0-bin"}
# What knows the folder with a file manager's modules; Dolphin's is one of Qt's plugins.
READERS = {"thunar": "lib/*/libthunarx-3.so.0", "caja": "bin/caja", "nemo": "bin/nemo", "nautilus": "bin/nautilus",
           "dolphin": "lib/*/libQt{0}Core.so.{0}"}
DEBIAN = SOURCE / "packaging/debian"
APPLICATIONS = "usr/share/applications/com.kestrel.Sprig.desktop"
ICONS = "usr/share/icons/hicolor/symbolic/apps"
SERVICE = "com.kestrel.Sprig.Extension.service"


def output_of(*command, **options):
    run = subprocess.run([str(word) for word in command], text=True, stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                         check=False, **options)
    assert run.returncode == 0, f"{command[0]}: {run.stdout}"
    return run.stdout


@pytest.fixture(scope="module", name="packages")
def make_packages(tmp_path_factory):
    """The packages, by their names."""
    for tool, package in TOOLS.items():
        assert shutil.which(tool), f"{tool} is missing: install the Debian package {package}"
    folder = tmp_path_factory.mktemp("packages")
    output_of("cpack", "--config", BUILD / "CPackConfig.cmake", "-B", folder)
    return {file.name.partition("_")[0]: file for file in folder.glob("*.deb")}


def dpkg(root, *arguments):
    """What is installed there finds neither its dependencies nor a log."""
    output_of(*AS_ROOT, "dpkg", f"--root={root}", "--log=/dev/null", "--force-depends", "--no-triggers", *arguments)


def files_below(root):
    return {file.relative_to(root) for file in root.rglob("*")
            if not file.is_relative_to(root / "var/lib/dpkg")}


@pytest.fixture(scope="module", name="root")
def install(packages, tmp_path_factory):
    """A file system with nothing but Sprig."""
    root = tmp_path_factory.mktemp("root")
    (root / "var/lib/dpkg/info").mkdir(parents=True)
    (root / "var/lib/dpkg/updates").mkdir()
    (root / "var/lib/dpkg/status").touch()
    bare = files_below(root)
    dpkg(root, "--install", *packages.values())
    assert files_below(root) > bare
    yield root
    dpkg(root, "--purge", *packages)
    assert files_below(root) == bare


def relations(package):
    """What a package depends on, without the versions, and the whole field."""
    field = output_of("dpkg-deb", "--field", package, "Depends")
    return {re.split(r"[ (|]", relation.strip())[0] for relation in field.split(",")}, field


def test_each_package_needs_what_it_uses_and_no_other_desktop(packages):
    assert set(packages) == {"sprig", "sprig-desktop"} | {f"sprig-{manager}" for manager in MANAGERS}
    version = output_of("dpkg-deb", "--field", packages["sprig"], "Version").strip()
    toolkits = re.compile("lib(glib|gtk|qt|kf|x11)")
    assert not [name for name in relations(packages["sprig"])[0] if toolkits.match(name)]
    for manager in MANAGERS:
        names, field = relations(packages[f"sprig-{manager}"])
        assert names & set(MANAGERS) == {manager}
        assert f"sprig-desktop (= {version})" in field
        assert manager == "dolphin" or not [name for name in names if re.match("lib(qt|kf)", name)]


def fields_of(package):
    return email.message_from_string(output_of("dpkg-deb", "--field", package))


def test_all_kinds_of_packages_have_the_same_names_versions_and_relations(packages, root):
    version = fields_of(packages["sprig"])["Version"]
    for program in ("bin/sprig", "bin/sprig-settings", "libexec/sprig/sprig-extension", "libexec/sprig/sprig-dialog"):
        assert output_of(root / "usr" / program, "--version") == f"{pathlib.Path(program).name} {version}\n"
    source, *stanzas = map(email.message_from_string, (DEBIAN / "control").read_text(encoding="utf-8").split("\n\n"))
    listed = {stanza["Package"]: stanza for stanza in stanzas}
    assert set(listed) >= set(packages)
    for name, package in packages.items():
        made = fields_of(package)
        assert [listed[name][key] for key in ("Description", "Recommends")] == [made["Description"], made["Recommends"]]
        depends = listed[name]["Depends"].replace("${binary:Version}", version).split(", ")
        assert {text for text in depends if "$" not in text} <= set(made["Depends"].split(", "))
    needed = re.findall(r"^(?:build|desktop) +(\S+)", (SOURCE / "scripts/packages").read_text(encoding="utf-8"), re.MULTILINE)
    alternatives = {frozenset(re.sub(r" \(.*?\)", "", text.strip()).split(" | "))
                    for text in source["Build-Depends"].split(",")}
    assert alternatives == {frozenset(text.split("|")) for text in needed if text != "g++"} | {frozenset(["debhelper-compat"])}
    said = {"rpm": output_of("rpmspec", "--query", "--qf", "%{NAME} %{VERSION}\n", SOURCE / "packaging/sprig.spec"),
            "pacman": output_of("bash", "-c", '. "$1" && printf "%s $pkgver\n" "${pkgname[@]}"', "bash",
                                SOURCE / "packaging/PKGBUILD")}
    assert {kind: set(text.splitlines()) for kind, text in said.items()} == {
        kind: {f"{name} {version}" for name in listed} for kind in said}
    assert (DEBIAN / "changelog").read_text(encoding="utf-8").startswith(f"sprig ({version}) ")


def test_an_rpm_holds_the_same_files(packages):
    libraries = "/usr/lib/" + output_of("dpkg-architecture", "-qDEB_HOST_MULTIARCH").strip()
    spec = output_of("rpmspec", "--parse", "--define", f"_libdir {libraries}", SOURCE / "packaging/sprig.spec")
    sections = re.findall(r"^%files *(\S*)\n(.*?)(?=^%files|\Z)", spec, re.MULTILINE | re.DOTALL)
    listed = {"-".join(filter(None, ["sprig", name])): re.findall("^/.+", text, re.MULTILINE) for name, text in sections}
    for name, package in packages.items():
        held = output_of("dpkg-deb", "--contents", package).replace("zsh/vendor-completions", "zsh/site-functions")
        files = [file for file in re.findall(r" \.(/\S+)$", re.sub("(?<=/qt|/kf)5(?=/)", "6", held), re.MULTILINE)
                 if not file.endswith("/")]
        found = {pattern: fnmatch.filter(files, pattern + "*" * pattern.endswith("/")) for pattern in listed[name]}
        assert all(found.values()) and set(files) == set().union(*found.values()), found


def test_debian_has_nothing_against_them(packages):
    assert output_of("lintian", "--allow-root", "--fail-on", "error,warning", "--suppress-tags",
                     "initial-upload-closes-no-bugs", *packages.values()) == ""


def test_software_centres_and_menus_understand_what_they_are_told(root):
    for file in (root / "usr/share/metainfo").iterdir():
        output_of("appstreamcli", "validate", "--no-net", file)
    output_of("desktop-file-validate", root / APPLICATIONS)


def test_the_bus_starts_the_extension_which_has_its_dialogs_beside_it(root):
    on_bus = (root / "usr/share/dbus-1/services" / SERVICE).read_text(encoding="utf-8")
    by_systemd = (root / "usr/lib/systemd/user" / SERVICE).read_text(encoding="utf-8")
    program = re.search("^Exec=/(.+)$", on_bus, re.MULTILINE)[1]
    assert f"ExecStart=/{program}\n" in by_systemd
    for file in (root / program, (root / program).with_name("sprig-dialog")):
        assert os.access(file, os.X_OK) and "not found" not in output_of("ldd", file)


PICK = r"""sed -i 's/"prompt"/"create"/' "$("$0/usr/bin/sprig" config init)"
gdbus call --session --dest com.kestrel.Sprig.Extension --object-path /com/kestrel/Sprig/Extension \
  --method com.kestrel.Sprig.Extension1.Activate template:builtin-plain-text 1 "['file://$HOME']" '{}'
until ls ~/*.txt 2>/dev/null; do sleep 0.05; done
grep NoNewPrivs "/proc/$(systemctl --user show --property MainPID --value com.kestrel.Sprig.Extension)/status"
"""


def test_the_unit_starts_an_extension_that_makes_files_and_restricts_no_file_manager_it_starts(root):
    said = output_of(pathlib.Path(__file__).with_name("user-manager.sh"), root, "sh", "-ec", PICK, root, timeout=60,
                     stdin=subprocess.DEVNULL)
    assert re.search(r"/[^/\n]+\.txt\nNoNewPrivs:\t0\n", said), said


@pytest.mark.parametrize("manager", MANAGERS)
def test_a_module_is_where_its_file_manager_looks(root, manager):
    [module] = root.rglob(f"*sprig*{manager}*.so")
    assert "not found" not in output_of("ldd", module)
    folder, *framework = re.split("/kf([56])/kfileitemaction", str(module.parent.relative_to(root / "usr")))
    [reader] = pathlib.Path("/usr").glob(READERS[manager].format(*framework))
    assert folder.encode() in reader.read_bytes()


def symbols_in(entries):
    for entry in entries:
        yield from [entry["icon"]] if "icon" in entry else []
        yield from symbols_in(entry.get("items", []))


def test_every_symbol_of_menus_and_built_in_templates_is_drawn(root, tmp_path):
    listed = subprocess.run([root / "usr/bin/sprig", "list", "--json"], cwd=tmp_path, text=True, check=True,
                            stdout=subprocess.PIPE, env={"HOME": str(tmp_path), "XDG_CONFIG_HOME": str(tmp_path),
                                                         "XDG_DATA_HOME": str(tmp_path)})
    symbols = {"doc.badge.plus", *symbols_in(json.loads(listed.stdout)["items"])}
    assert len(symbols) > 10
    for symbol in symbols:
        drawing = xml.etree.ElementTree.parse(root / ICONS / f"sprig-{symbol.replace('.', '-')}-symbolic.svg").getroot()
        assert (drawing.get("width"), drawing.get("height"), drawing.get("viewBox")) == ("16", "16", "0 0 16 16")
        # Toolkits fill whatever there is, and leave lines in their colour.
        for shape in drawing.iter("{http://www.w3.org/2000/svg}path"):
            assert shape.get("fill") == "currentColor" and shape.get("stroke") is None
