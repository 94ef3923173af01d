"""The faults that change nothing that could be seen, with the reason why."""

# An entry is four lines, and a blank line or a comment ("#") before the next:
#
#   base/console.cpp number
#   - the line as it is
#   + the line with the fault
#   why nobody could tell


class Equivalent:
    def __init__(self, lines, number):
        if len(lines) < 4 or len(lines[0].split()) != 2:
            raise SystemExit(f"equivalent.txt:{number}: an entry is four lines: place, -, +, reason")
        self.number = number
        self.path, self.kind = lines[0].split()
        self.minus = lines[1].removeprefix("-").strip()
        self.plus = lines[2].removeprefix("+").strip()
        self.reason = " ".join(lines[3:])

    def key(self):
        return f"{self.path}|{self.kind}|{self.minus}|{self.plus}"


def read_equivalents(text):
    entries = []
    lines = []
    begin = 0
    for number, line in enumerate([*text.splitlines(), ""], start=1):
        line = line.strip()
        if line and not line.startswith("#"):
            begin = begin if lines else number
            lines.append(line)
        elif lines:
            entries.append(Equivalent(lines, begin))
            lines = []
    return entries


def reasons_by_key(entries, faults):
    """Ends the run when an entry is of no fault that there can be."""
    known = {fault.key() for of_file in faults.values() for fault in of_file}
    stale = [entry for entry in entries if entry.key() not in known]
    for entry in stale:
        print(f"equivalent.txt:{entry.number}: no fault of {entry.path} is this: + {entry.plus}")
    if stale:
        raise SystemExit(1)
    return {entry.key(): entry.reason for entry in entries}
