"""The tests that CMake knows of: the executables as nhupdate_add_test_executable has described them,
and the tests that are commands."""
import re

PRESETS = ("host", "mingw-release")

_TEST = re.compile(r"^(?:TEST|TEST_F|TEST_P)\(\s*(\w+),\s*(\w+)\s*\)", re.MULTILINE)
_INSTANCE = re.compile(r"^INSTANTIATE_TEST_SUITE_P\(\s*(\w+),\s*(\w+)", re.MULTILINE)
# A line each in the files that CMake writes for ctest.
_COMMAND_LINE = re.compile(r"^(?:add_test|set_tests_properties)\(\[=\[(.+?)\]=\]")
_LABEL = re.compile(r' LABELS "(\w+)"')


class Executable:
    """An executable of GoogleTest's tests."""

    def __init__(self, preset, description):
        self.preset = preset
        self.name = description.stem
        facts = {}
        for line in description.read_text(encoding="utf-8").splitlines():
            key, _, value = line.partition(" ")
            facts.setdefault(key, []).append(value)
        self.ring = facts["ring"][0]
        # Where it can be run. All its tests can be run in any of them.
        self.lanes = facts["lane"] if preset != "host" else []
        self.prefix = facts["prefix"][0]
        self.program = facts["program"][0]
        # In seconds, for one test.
        self.time_limit = int(facts["timeout"][0])
        self.list_of_tests = facts["tests"][0]
        self.sources = facts["source"]

    def needs_package(self):
        return self.ring == "end_to_end" or self.name == "shipped_tests"


class Command:
    """A test that is no executable of GoogleTest's."""

    def __init__(self, name):
        self.name = name
        self.ring = None
        self.lines = []


def names_in_source(text):
    """The tests that a source file defines, as SUITE.TEST; for one with parameters also the
    beginning of the names that it has then."""
    instances = _INSTANCE.findall(text)
    for suite, test in _TEST.findall(text):
        yield f"{suite}.{test}"
        for instance, instantiated in instances:
            if instantiated == suite:
                yield f"{instance}/{suite}.{test}/"


def find_executables(build):
    return [
        Executable(preset, description)
        for preset in PRESETS
        for description in sorted((build / preset / "test_executables").glob("*.txt"))
    ]


def find_commands(build):
    commands = {}
    for preset in PRESETS:
        for file in sorted((build / preset).rglob("CTestTestfile.cmake")):
            for line in file.read_text(encoding="utf-8").splitlines():
                if match := _COMMAND_LINE.match(line):
                    command = commands.setdefault(match[1], Command(match[1]))
                    command.lines.append(line)
                    if label := _LABEL.search(line):
                        command.ring = label[1]
    return list(commands.values())
