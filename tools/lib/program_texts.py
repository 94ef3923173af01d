"""What the program tells and does, read from its sources: the texts of its log and console, the
keys of its boxes, the command lines it starts, the registry values it writes, its exit codes.

A call whose text can't be read raises an error: what isn't understood must not be passed over.
"""
import dataclasses
import pathlib
import re

PRODUCT = ("app", "base", "install", "log", "text", "update")
CATALOG = "update/launch_catalog.h"
RESULT_CODES = "update/result_code.h"
STRING_KEYS = "text/string_keys.h"
REGISTRATION = "install/registration.cpp"

LEVELS = {"kInformation": 2, "kWarning": 3, "kError": 4}
LITERAL = re.compile(r'L?"((?:[^"\\]|\\.)*)"')


@dataclasses.dataclass(frozen=True)
class Text:
    """A printf format; what is joined to a literal stands in it as %s."""

    format: str
    place: str
    level: int = 0

    def pattern(self):
        """Whatever can come of the format, also with {placeholders}."""
        parts = re.split(r"(%\d*[sd]|%%)", self.format)
        for index, part in enumerate(parts):
            if part == "%%":
                parts[index] = "%"
            elif part.startswith("%") and part.endswith("s"):
                parts[index] = "(?:.*)"
            elif part.startswith("%"):
                parts[index] = r"(?:-?\d+|\{\w+\})"
            else:
                parts[index] = re.escape(part)
        return "".join(parts)


@dataclasses.dataclass(frozen=True)
class ExitCode:
    name: str
    number: int
    mode: str  # a switch, or empty when there is none


def unescaped(literal):
    units = {"n": "\n", "t": "\t", "r": "\r", "0": "\0"}
    return re.sub(
        r"\\(u[0-9A-Fa-f]{4}|.)",
        lambda escape: (
            chr(int(escape[1][1:], 16))
            if len(escape[1]) > 1
            else units.get(escape[1], escape[1])
        ),
        literal,
    )


def product_sources(root):
    """Path to text, without comments, which leave their line ends behind."""
    sources = {}
    for folder in PRODUCT:
        for file in sorted((root / folder).rglob("*")):
            if file.suffix in (".cpp", ".h"):
                sources[file.relative_to(root).as_posix()] = re.sub(
                    r"(?m)//[^\"\n]*$", "", file.read_text(encoding="utf-8")
                )
    return sources


def arguments(source, begin):
    """Those of the call whose first one begins here."""
    found = []
    current = ""
    depth = 0
    position = begin
    while True:
        literal = LITERAL.match(source, position)
        if literal:
            current += literal[0]
            position = literal.end()
            continue
        unit = source[position]
        if unit == ")" and depth == 0:
            return [*found, current.strip()]
        if unit == "," and depth == 0:
            found.append(current.strip())
            current = ""
        else:
            depth += unit in "([{"
            depth -= unit in ")]}"
            current += unit
        position += 1


def joined(argument):
    """The text of literals, which may be joined with other things; nothing when there is none."""
    literals = list(LITERAL.finditer(argument))
    if not literals:
        return None
    text = ""
    end = 0
    for literal in literals:
        between = argument[end : literal.start()]
        text += "%s" if "+" in between else ""
        text += unescaped(literal[1])
        end = literal.end()
    return text + ("%s" if argument[end:].strip() else "")


def calls(sources, name):
    """Path, line and arguments of each call of that name."""
    for path, source in sources.items():
        for match in re.finditer(rf"(?<![\w:]){name}\((?=\s*[^)\s])", source):
            line = source.count("\n", 0, match.start()) + 1
            yield f"{path}:{line}", arguments(source, match.end())


def messages_of_launches(root, member):
    """Those of the catalogue, and the one that a launch has without any."""
    catalog = (root / CATALOG).read_text(encoding="utf-8")
    default = (root / "update/child_launch.h").read_text(encoding="utf-8")
    return sorted(set(re.findall(rf'\b{member} = L"([^"]*)"', catalog + default)))


def log_texts(root):
    """Of all levels, the program's and the log library's own."""
    found = []
    for path_and_line, given in [
        *calls(product_sources(root), "(?:Write|WriteText)"),
        *calls(product_sources(root), "Log"),
    ]:
        level = re.fullmatch(r"LogLevel::(\w+)", given[0])
        if not level:
            # Declarations and what passes a level on; what writes registry values.
            is_registry = path_and_line.startswith(REGISTRATION)
            if given[0] not in ("LogLevel level", "level") and not is_registry:
                raise ValueError(f"{path_and_line}: this level can't be read: {given[0]}")
            continue
        number = LEVELS[level[1]]
        member = re.fullmatch(r"(?:launch|messages)\.(\w+)", given[1])
        if member and member[1].endswith("_message"):
            texts = messages_of_launches(root, member[1])
        elif member:
            texts = [
                text
                for source in product_sources(root).values()
                for text in re.findall(rf'\.{member[1]} = L"([^"]*)"', source)
            ]
        else:
            texts = [joined(given[1])]
        if not texts or None in texts:
            raise ValueError(f"{path_and_line}: this text can't be read: {given[1]}")
        found += [Text(text, path_and_line, number) for text in texts]
    return found + log_library_texts(root)


def log_library_texts(root):
    """Its warnings and errors, each of which is made by a function of its own."""
    found = []
    for file in sorted((root / "log_library").glob("*.cpp")):
        source = file.read_text(encoding="utf-8")
        place = file.relative_to(root).as_posix()
        uses = re.findall(r"\bk(Warning|Error)Level, kOwnTag, (\w+)\(", source)
        if len(uses) != len(re.findall(r"\bk(?:Warning|Error)Level, kOwnTag\b", source)):
            raise ValueError(f"{place}: a record of the log library's own can't be read")
        for level, maker in uses:
            made = re.search(rf"\b{maker}\([^)]*\) {{\s*return ([^;]+);", source)
            text = made and joined(made[1])
            if not text:
                raise ValueError(f"{place}: the text of {maker} can't be read")
            found.append(Text(text, place, LEVELS[f"k{level}"]))
    return found


def console_texts(root):
    found = []
    for path_and_line, given in calls(product_sources(root), "PrintConsoleError"):
        if given[0].startswith("FormatString<"):
            continue
        text = joined(given[0])
        if text is None:
            raise ValueError(f"{path_and_line}: this text can't be read: {given[0]}")
        found.append(Text(text.rstrip("\n"), path_and_line))
    return found


def command_lines(root):
    """Executable and parameters of each launch of the catalogue, and the parameters of the tool."""
    found = []
    text = (root / CATALOG).read_text(encoding="utf-8")
    for launch in re.findall(r"constexpr ChildLaunch \w+ = \{(.*?)\n\};", text, re.DOTALL):
        executable = re.search(r'\.executable = L"\\\\([^"]+)"', launch)[1]
        begin = re.search(r"CLaunchParameters::\w+\(", launch).end()
        found.append((executable, Text(joined(arguments(launch, begin)[0]), CATALOG)))
    access = product_sources(root)["install/folder_access.cpp"]
    tool = re.search(r'kProgram\[\] = L"([^"]+)"', access)[1]
    begin = re.search(r"return Format\(", access).end()
    found.append((tool, Text(joined(arguments(access, begin)[0]), "install/folder_access.cpp")))
    return found


def registry_rows(root):
    """Key and name of each value."""
    source = product_sources(root)[REGISTRATION]
    keys = {
        name: unescaped(path)
        for name, path in re.findall(r'(\w+Key)\[\] =\s*L"([^"]+)"', source)
    }
    rows = [(keys[key], name) for key, name in re.findall(r'\{(\w+Key), L"(\w+)"', source)]
    if len(rows) != len(re.findall(r"\{\s*k\w+Key,", source)):
        raise ValueError(f"{REGISTRATION}: a row can't be read")
    return rows


def box_keys(root):
    return re.findall(r'= L"(KEY_\w+)"', (root / STRING_KEYS).read_text(encoding="utf-8"))


def exit_codes(root):
    """One for each mode that the comment above a group of codes names."""
    text = (root / RESULT_CODES).read_text(encoding="utf-8")
    found = []
    for group in text.split("\n\n"):
        modes = re.findall(r'"(-\w+)"', group)
        if "no mode" in group:
            modes.append("")
        for name, number in re.findall(r"constexpr int (\w+) = (\d+);", group):
            found += [ExitCode(name, int(number), mode) for mode in modes]
    return found
