# SPDX-License-Identifier: GPL-3.0-or-later
"""The lines of the table: what is compared with what, and the limits."""

import dataclasses
import statistics


def duration(nanoseconds):
    for unit, size in (("ns", 1), ("µs", 1e3), ("ms", 1e6)):
        if nanoseconds < 1000 * size:
            return f"{nanoseconds / size:.3g} {unit}"
    return f"{nanoseconds / 1e9:.3g} s"


def megabytes(size):
    return f"{size / 1e6:.1f} MB"


def milliseconds(nanoseconds):
    return f"{nanoseconds / 1e6:.1f} ms"


def percentile_99(values):
    return statistics.quantiles(values, n=100)[98]


def verdict(is_met):
    return "met" if is_met else "MISSED"


@dataclasses.dataclass(frozen=True)
class Ratio:
    """How many times as long as something else an operation takes."""
    operation: str
    ours: str
    against: str
    floor: str
    limit: float = None
    # How much more there is to do for ours.
    scale: float = 1
    of: callable = statistics.median

    def cells(self, samples):
        ours, floor = self.of(samples[self.ours]), self.of(samples[self.floor])
        ratio = ours / floor / self.scale
        limited = (f"{self.limit:g}", verdict(ratio <= self.limit)) if self.limit else ("", "")
        return (self.operation, duration(ours), self.against, duration(floor), f"{ratio:.3g}", *limited)


@dataclasses.dataclass(frozen=True)
class More:
    """How much more than something else an operation takes, or how many bytes more a process holds."""
    operation: str
    ours: str
    against: str
    floor: str
    limit: float = None
    shown: callable = megabytes
    of: callable = statistics.median

    def cells(self, samples):
        ours, floor = self.of(samples[self.ours]), self.of(samples[self.floor])
        more = ours - floor
        limited = (f"+{self.shown(self.limit)}", verdict(more <= self.limit)) if self.limit else ("", "")
        return (self.operation, self.shown(ours), self.against, self.shown(floor),
                f"{'' if more < 0 else '+'}{self.shown(more)}", *limited)


@dataclasses.dataclass(frozen=True)
class Within:
    """How long an operation takes, whatever else takes."""
    operation: str
    ours: str
    limit: float
    of: callable = statistics.median

    def cells(self, samples):
        ours = self.of(samples[self.ours])
        return (self.operation, duration(ours), "", "", "", duration(self.limit), verdict(ours <= self.limit))


JSON = "the JSON parsed only"
COPY = "the text copied"
PEER = "kainjow's mustache"
TESTS = "as many faccessat"
BARE = "a bare service"
SIZES = {1_000: "1 kB", 100_000: "100 kB", 10_000_000: "10 MB"}
FILLED = {0: "no placeholders", 1: "few", 2: "many"}

# As they are felt in file managers: what, which measure of it, in which unit, and the limit.
FELT = [("start", "start", milliseconds, statistics.median, 10e6),
        ("right click to menu, 11 templates", "menu of 11", milliseconds, statistics.median, 1e6),
        ("the same, 99th percentile", "menu of 11", milliseconds, percentile_99, 3e6),
        ("right click to menu, 1,000 templates", "menu of 1000", milliseconds, statistics.median, 1e6),
        ("memory written, 11 templates", "memory with 11", megabytes, statistics.median, 1.5e6),
        ("memory written, 1,000 templates", "memory with 1000", megabytes, statistics.median, None)]
GROWTH = {"select": "changes of the selection", "open": "opened menus", "save": "saves of 400 templates"}
MANAGERS = {"nautilus": "GNOME Files", "nemo": "Nemo", "caja": "Caja", "thunar": "Thunar", "dolphin": "Dolphin"}

ROWS = [
    *(Ratio(f"decode {count:,} templates", f"decode/ours/{count}", JSON, f"decode/floor/{count}", 1.6)
      for count in (11, 1_000, 10_000)),
    Ratio("reload 1,000 templates, to the menu", "reload/ours/1000", "their decoding", "reload/floor/1000", 1.5),
    Ratio("the same, saved by renaming", "reload/renamed/1000", "their decoding", "reload/floor/1000"),
    *(Ratio(f"render {text}, {filled}", f"render/ours/{size}/{kind}", COPY, f"render/floor/{size}/{kind}",
            {(100_000, 0): 8, (100_000, 1): 8, (10_000_000, 1): 4}.get((size, kind)))
      for size, text in SIZES.items() for kind, filled in FILLED.items()),
    Within("render 1 kB, no placeholders", "render/ours/1000/0", 300),
    *(Ratio(f"render {text}, {filled}", f"render/ours/{size}/{kind}", PEER, f"render/peer/{size}/{kind}", 1 / 20)
      for size, text in SIZES.items() for kind, filled in FILLED.items() if size < 10_000_000 or kind == 1),
    *(Ratio(f"render 10 MB, {filled}, a byte", f"render/ours/10000000/{kind}", "of 100 kB",
            f"render/ours/100000/{kind}", 1.3, scale=100) for kind, filled in FILLED.items()),
    *(Ratio(f"free name, {count:,} taken", f"free name/ours/{count}", TESTS, f"free name/floor/{count}",
            1.3 if count == 9_998 else None) for count in (0, 3, 9_998)),
    *(Ratio(f"the same, {count:,} taken", f"free name/ours/{count}", "those and opening the folder",
            f"free name/opening/{count}", 1.3) for count in (0, 3)),
    *(Ratio(f"create a file of {text}", f"create/ours/{size}", "mkostemp, write, fsync, rename",
            f"create/floor/{size}", 1.2) for size, text in ((1_000, "1 kB"), (20_000_000, "20 MB"))),
    Ratio("the same of 1 kB", "create/ours/1000", "those, with link and unlink", "create/linked/1000", 1.2),
    *(Ratio(f"menu of {count:,} templates", f"menu/ours/{count}", "their titles copied", f"menu/floor/{count}")
      for count in (11, 100, 1_000)),
    Ratio("project detection", "detect/ours", "four folders listed", "detect/floor", 1.5),
    Ratio("project detection, cached", "detect/cached", "not cached", "detect/ours", 0.01),
    Ratio("menu over the bus, 30 rows", "bus warm/ours", "an empty call, " + BARE, "bus warm/floor", 1.6),
    Ratio("the same, as the bytes that come", "bus warm/bytes", "an empty call, " + BARE, "bus warm/floor", 1.6),
    Ratio("the same, 99th percentile", "bus warm/ours", "an empty call, " + BARE, "bus warm/floor",
          of=percentile_99),
    Ratio("menu over the bus, 30 rows", "bus warm/ours", "a property of the same", "bus warm/property"),
    Ratio("start by the bus, to the first menu", "bus cold/ours", BARE, "bus cold/floor"),
    Ratio("start by the bus, to the first menu", "bus cold/ours", BARE + ", our libraries", "bus cold/linked", 1.5),
    *(More(f"{kind} memory, {what}", f"memory/{kind}/{which}", BARE, f"memory/{kind}/bare", 6e6)
      for kind in ("resident", "private") for which, what in (("11", "11 templates"), ("1000", "1,000 templates"))),
    *(More(f"{kind} memory after prompts", f"memory/{kind}/after", "before them", f"memory/{kind}/before", 0.1e6)
      for kind in ("resident", "private")),
    Ratio("prompt, from the pick to keys", "prompt/ours", "a bare GTK 4 window", "prompt/floor", 1.3),
    Ratio("pick in Thunar, to the file", "thunar/ours", "its own Create Document", "thunar/floor", 1),
    *(Ratio(f"settings of {count:,} templates", f"settings/ours/{count}", "a bare window, same list",
            f"settings/floor/{count}", 1.3) for count in (11, 1_000)),
    *(Ratio(f"a key in their search, of {count:,}", f"search/{count}", "an empty list's", "search/0")
      for count in (11, 1_000)),
    Within("the slowest key of those, of 1,000", "search/1000", 16.7e6, of=max),
    *(Ratio(f"{what} {count:,} templates, each", f"curve/{curve}/{count}", f"of {count // 10:,}",
            f"curve/{curve}/{count // 10}", scale=10)
      for curve, what in (("decode", "decode"), ("reload", "reload"), ("menu", "menu of"), ("list", "sprig list of"))
      for count in (10_000, 100_000)),
    Within("start of sprig list", "start/ours", 5e6),
    Ratio("start of sprig list", "start/ours", "/bin/true", "start/true"),
    Ratio("start of sprig list", "start/ours", "git --version", "start/git"),
    *(More(f"{name}: {what}", f"felt/{manager}/{measure}/with", "without Sprig", f"felt/{manager}/{measure}/without",
           limit, unit, of)
      for manager, name in MANAGERS.items() for what, measure, unit, of, limit in FELT),
    *(More(f"{name} grows in 1,000 {steps}", f"growth/{manager}/{step}/with", "without Sprig",
           f"growth/{manager}/{step}/without", 2e6)
      for manager, name in MANAGERS.items() for step, steps in GROWTH.items()),
]
