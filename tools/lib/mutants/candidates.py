"""All faults that could be planted, and the choice among them."""

import hashlib
import re
from itertools import zip_longest

from cpp_tokens import Source
from cpp_units import read_units
from fault_kinds import Names, edits_of

FOLDERS = ("app", "base", "log", "log_library", "text", "update", "install")


class Fault:
    def __init__(self, path, unit, edit):
        self.path = path
        self.unit = unit
        self.edit = edit
        self.kind = edit.kind
        self.folder = path.split("/")[0]
        self.line = unit.source.line_of(edit.start)
        self.number = 0  # by which it is chosen at run time; 0 when it can't be
        self.minus, self.plus = self._changed_lines()

    def _changed_lines(self):
        """The lines that the fault changes, before and after, each in one line."""
        text = self.unit.source.text
        begin, end = self.unit.source.lines_around(self.edit.start, self.edit.stop)
        before = text[begin : self.edit.start]
        behind = text[self.edit.stop : end]
        return _one_line(text[begin:end]), _one_line(before + self.plain_replacement() + behind)

    def plain_replacement(self):
        """What stands in the place of the edited text when the source is simply changed."""
        if self.edit.whole == "negated":
            if self.unit.kind == "named":
                return f"{self.unit.text()}; !({self.unit.name})"
            return f"!({self.unit.text()})"
        if self.edit.whole == "false" and self.unit.kind == "named":
            return f"{self.unit.text()}; false"
        return self.edit.replacement

    def changed_source(self):
        text = self.unit.source.text
        return text[: self.edit.start] + self.plain_replacement() + text[self.edit.stop :]

    def key(self):
        """Stays the same when the lines above it become more or fewer."""
        return f"{self.path}|{self.kind}|{self.minus}|{self.plus}"


def _one_line(text):
    return re.sub(r"\s+", " ", text).strip()


def _hash(text):
    return hashlib.sha256(text.encode()).hexdigest()


def read_sources(root, paths):
    sources = {}
    for path in paths:
        sources[path] = Source((root / path).read_text(encoding="utf-8"))
    return sources


def find_faults(sources):
    """Returns the faults of each path in the order of their places, with their ids."""
    units = {}
    enums = {}
    for path, source in sources.items():
        units[path], own_enums = read_units(source)
        enums.update(own_enums)
    names = Names(sources, enums)
    faults = {}
    for path in sources:
        found = [Fault(path, unit, edit) for unit in units[path] for edit in edits_of(unit, names)]
        faults[path] = sorted(found, key=lambda fault: (fault.line, fault.edit.start))
        _name(faults[path])
    return faults


def _name(faults):
    counts = {}
    for fault in faults:
        name = f"{fault.path}:{fault.line}:{fault.kind}"
        counts[name] = counts.get(name, 0) + 1
        fault.id = name if counts[name] == 1 else f"{name}.{counts[name]}"


def _spread(faults):
    """The faults of a file in the order in which they are chosen: each kind in turn, and within a
    kind as if by lot, but always the same."""
    kinds = {}
    for fault in faults:
        kinds.setdefault(fault.kind, []).append(fault)
    for of_kind in kinds.values():
        of_kind.sort(key=lambda fault: _hash(fault.key()))
    ordered = [kinds[kind] for kind in sorted(kinds, key=lambda kind: _hash(faults[0].path + kind))]
    return [fault for turn in zip_longest(*ordered) for fault in turn if fault]


def _code_lines(source):
    return sum(1 for line in source.text.splitlines() if re.match(r"\s*[^\s/]", line))


def choose(faults, sources, count):
    """Some of each file, and otherwise as many as it has lines; `count` in all."""
    paths = [path for path in sources if faults[path]]
    spread = {path: _spread(faults[path]) for path in paths}
    taken = {path: min(2, len(spread[path])) for path in paths}
    rest = count - sum(taken.values())
    lines = {path: _code_lines(sources[path]) for path in paths}
    while rest > 0:
        # The one that has the fewest for its lines.
        open_paths = [path for path in paths if taken[path] < len(spread[path])]
        if not open_paths:
            break
        path = min(open_paths, key=lambda path: (taken[path] / lines[path], path))
        taken[path] += 1
        rest -= 1
    return {path: _without_overlaps(spread[path], taken[path]) for path in paths}


def _without_overlaps(spread, count):
    """Two pairs of exchanged statements that have one in common show much the same."""
    chosen = []
    exchanged = set()
    for fault in spread:
        if len(chosen) == count:
            break
        if fault.edit.whole == "exchanged":
            pair = {fault.unit.begin, fault.unit.next.begin}
            if exchanged & pair:
                continue
            exchanged |= pair
        chosen.append(fault)
    return sorted(chosen, key=lambda fault: (fault.line, fault.edit.start))
