"""docs/log.md against the sources: log_page_test.py REPOSITORY

Every text that the program logs as a warning or an error, and every information that tells of a
failure, has a row there, and every row stands for a text that there is. The same for what goes to
the console, for what the log library says of itself and its start, and for error numbers.
"""

import pathlib
import re
import sys
import unittest

REPOSITORY = pathlib.Path(sys.argv.pop())
PROGRAM = ("app", "base", "install", "log", "text", "update")
PAGE = (REPOSITORY / "docs/log.md").read_text(encoding="utf-8")

# What is logged as information and tells of no failure. A new text comes here or into the page.
NO_FAILURES = {
    "Begin background download.",
    "CSUpdateManager exit = %d",
    "Begin update updater.",
    "Copy NHUpdateManager success.",
    "Copy OK : %s => %s",
    "Copy complete.",
    "Copy file from %s to %s",
    "Copy files OK.",
    "Copy folder from %s to %s",
    "Delete Dir : %s",
    "Delete OK : %s",
    "Download success.",
    "Found System language setting : %s",
    "Found steam language setting : %s",
    "Function : Check and background download",
    "Function : Final Update",
    "Function : Install",
    "Function : Self Update",
    "Function : Update",
    "Install NCS begin.",
    "Install NCS end.",
    "Install ND begin.",
    "Install ND end.",
    "Install success.",
    "Launch CSUpdateManager success for install.",
    "Launch NHUpdateManager success for final update.",
    "Launch NHUpdateManager success for self update.",
    "Launch folder : %s",
    "Launch param : %s",
    "Launch path : %s",
    "Launch updater success for baclground download.",
    "Launch updater success for check.",
    "Launch updater success for download.",
    "Launch updater success for update.",
    "Load strings from %s",
    "Mapping steam language to %s.",
    "NHUpdateManager crash dump folder set to : %s",
    "New update available.",
    "New updater available.",
    "Nimba Hub registry set.",
    "No new updater available.",
    "No update available.",
    "Process elevated.",
    "Remove empty folder : %s",
    "ShellExecute ICACLS success on %s, Params = %s, Return Code = %d",
    "Skip terminate current process %s(%d).",
    "Steam language setting not found.",
    "Stop associates OK.",
    "Target process %s not found.",
    "Update registry OK.",
    "Update updater complete.",
    "Updater config file delete ok : %s",
    "Updater exit = %d",
    "Version match between installed and app folder : %s",
    "Version mismatch between installed (%s) and app folder (%s).",
}

LEVELS = {"kInformation": "INFO", "kWarning": "WARN", "kError": "ERROR"}
# Members of launches and checks that are texts, and the level that they are logged with.
MEMBERS = {
    "not_found_message": "ERROR",
    "failure_message": "ERROR",
    "success_message": "INFO",
    "exit_message": "INFO",
    "found": "INFO",
    "nothing_found": "INFO",
}

LITERAL = r'L"((?:[^"\\]|\\.)*)"'
# Literals one behind the other, or joined to what is not known here.
TEXT = rf"{LITERAL}(?:\s*(?:\+\s*[\w.*>-]+(?:\s*\+\s*)?)?\s*{LITERAL})*(?:\s*\+\s*[\w.*>-]+)?"
CALL = re.compile(rf"\b(?:Write|WriteText|Log)\(\s*LogLevel::(k\w+),\s*(?:({TEXT})|([\w.>-]+))\s*[,)]")
MEMBER = re.compile(rf"\.?\b({'|'.join(MEMBERS)})\s*=\s*({TEXT})")


def text_of(expression):
    """The format that the literals and what is joined to them make."""
    parts = re.findall(rf"{LITERAL}|(\+\s*[\w.*>-]+)(?!\s*\")", expression)
    return "".join("%s" if joined and joined[-1] != "L" else literal for literal, joined in parts)


def logged_texts(source):
    """(level, text) of each text in the source; and the calls whose text is not found."""
    source = re.sub(r"//[^\n]*", "", source)
    texts = set()
    unknown = []
    for call in re.finditer(r"\b(?:Write|WriteText|Log)\(\s*LogLevel::k\w+", source):
        match = CALL.match(source, call.start())
        if match is None:
            unknown.append(source[call.start() :].split(";")[0])
        elif match[2]:
            texts.add((LEVELS[match[1]], text_of(match[2])))
        elif match[0] and match[match.lastindex].rpartition(".")[2] not in MEMBERS:
            unknown.append(match[0])
    for match in MEMBER.finditer(source):
        texts.add((MEMBERS[match[1]], text_of(match[2])))
    return texts, unknown


def sources(folders):
    for folder in folders:
        for file in sorted((REPOSITORY / folder).glob("*.*")):
            if file.suffix in (".cpp", ".h"):
                yield file.read_text(encoding="utf-8")


def program_texts():
    texts = set()
    for source in sources(PROGRAM):
        found, unknown = logged_texts(source)
        if unknown:
            raise AssertionError(f"This test doesn't see which text is logged: {unknown}")
        texts |= found
    return texts


def section(page, title):
    """What stands below the title, up to the next of its rank or above."""
    match = re.search(rf"(?m)^(#+) {re.escape(title)}\n", page)
    rest = page[match.end() :]
    end = re.search(rf"(?m)^#{{1,{len(match[1])}}} ", rest)
    return rest[: end.start()] if end else rest


def rows(text):
    for line in text.splitlines():
        cells = [cell.strip() for cell in line.strip("|").split(" | ")]
        if line.startswith("| ") and not line.startswith("|---"):
            yield cells


def failure_rows(page):
    """(level, what the line reads) of each row on failures."""
    for cells in rows(section(page, "What a failure looks like")):
        if cells[0] != "line":
            for line in re.findall(r"`([^`]+)`", cells[0]):
                yield cells[1], line


def pattern_of(text):
    """Lines that the text can be, with "..." for texts and N for numbers, or real ones."""
    parts = re.split(r"(%s|%0?2?d)", text)
    return "".join(
        ".*" if part == "%s" else r"(?:N|-?\d+)" if part.endswith("d") and part[0] == "%" else re.escape(part)
        for part in parts
        if part
    )


def shortened_pattern_of(line):
    """Texts that a row can mean by a line with "..." in it."""
    return ".*".join(map(re.escape, line.split("...")))


def in_page(text):
    return text.replace("%s", "...").replace("%d", "N")


def missing_and_stale(page, texts):
    lines = set(failure_rows(page))
    for level, text in sorted(texts):
        if level == "INFO" and text in NO_FAILURES:
            continue
        if not any(level == one and re.fullmatch(pattern_of(text), line) for one, line in lines):
            yield f"has no row: {level} {text}"
    for level, line in sorted(lines):
        if not any(
            level == one
            and (
                re.fullmatch(pattern_of(text), line)
                or re.fullmatch(shortened_pattern_of(line), in_page(text))
            )
            for one, text in texts
        ):
            yield f"is logged by nothing: {level} {line}"


class LogPageTest(unittest.TestCase):
    def test_every_text_has_its_row_and_every_row_its_text(self):
        self.assertEqual(list(missing_and_stale(PAGE, program_texts())), [])

    def test_no_text_is_taken_for_harmless_that_is_gone(self):
        information = {text for level, text in program_texts() if level == "INFO"}
        self.assertEqual(NO_FAILURES - information, set())

    def test_a_row_that_is_taken_away_is_missed(self):
        texts = program_texts()
        for row in section(PAGE, "What a failure looks like").splitlines():
            # That one is about texts which mostly tell of no failure.
            if row.startswith("| `") and not row.startswith("| `Launch ... success for ...`"):
                with self.subTest(row=row):
                    without = PAGE.replace(row + "\n", "")
                    self.assertNotEqual(list(missing_and_stale(without, texts)), [])

    def test_a_row_too_many_is_found(self):
        page = PAGE.replace("| `Updater error.` |", "| `Updater terror.` | ERROR | | |\n| `Updater error.` |")
        self.assertEqual(
            list(missing_and_stale(page, program_texts())), ["is logged by nothing: ERROR Updater terror."]
        )

    def test_a_row_of_another_level_is_none(self):
        page = PAGE.replace("| `Updater error.` | ERROR |", "| `Updater error.` | WARN |")
        self.assertEqual(
            list(missing_and_stale(page, program_texts())),
            ["has no row: ERROR Updater error.", "is logged by nothing: WARN Updater error."],
        )

    def test_texts_are_found_in_sources(self):
        texts, unknown = logged_texts(
            'log.Write(LogLevel::kError,\n   L"a %s "\n  L"b %d", x);'
            'log_.WriteText(LogLevel::kInformation, L"from " + source + L" to " + target);'
            'Log(LogLevel::kWarning, L"once");  // Log(LogLevel::kError, L"in a comment")\n'
            '.failure_message = L"failed : %d",  // sic\n'
            "log.Write(LogLevel::kError, launch.failure_message, *error);"
        )
        self.assertEqual(
            texts,
            {
                ("ERROR", "a %s b %d"),
                ("INFO", "from %s to %s"),
                ("WARN", "once"),
                ("ERROR", "failed : %d"),
            },
        )
        self.assertEqual(unknown, [])

    def test_texts_that_are_not_seen_are_said(self):
        for source in (
            "log.Write(LogLevel::kError, text_from_elsewhere);",
            "log.Write(LogLevel::kError, is_bad ? L\"a\" : L\"b\");",
        ):
            self.assertEqual(len(logged_texts(source)[1]), 1, source)

    def test_console_texts(self):
        printed = {
            text.removesuffix("\\n")
            for source in sources(PROGRAM)
            for text in re.findall(rf"PrintConsoleError\({LITERAL}", source)
        }
        told = {
            line.replace("<path>", "%s").replace(": N", ": %d")
            for cells in rows(section(PAGE, "When there is no log"))
            for line in re.findall(r"`([^`]+)`", cells[0])
        }
        self.assertEqual(printed, told)

    def test_codes_of_the_librarys_start(self):
        header = (REPOSITORY / "log_library/start_result.h").read_text(encoding="utf-8")
        codes = set(re.findall(r"= (\d+),", header)) - {"0"}
        table = section(PAGE, "When there is no log").split("What `Log start fail` says:")[1]
        self.assertEqual({cells[0] for cells in rows(table)} - {"N"}, codes)

    def test_the_librarys_own_records(self):
        source = "".join(sources(["log_library"]))
        told = section(PAGE, "The log library's own records")
        for beginning in ("Records before this one that could not be written: ", ", in place of NHUpdateManager.log, which "):
            self.assertIn(beginning, source)
            self.assertIn(beginning.strip(), told)
        # Another way to write a record of its own would have to be told of as well.
        self.assertEqual(len(re.findall(r"kOwnTag,", source)), 3)

    def test_commands_are_those_that_are_tried(self):
        page = section(PAGE, "How to tell and repair a half-done update")
        test = (REPOSITORY / "tests/end_to_end/half_done_update_test.cpp").read_text(encoding="utf-8")
        commands = [
            line.strip()
            for block in re.findall(r"(?s)```bat\n(.*?)```", page)
            for line in block.splitlines()
            if not line.startswith("set ") and line.strip()
        ]
        self.assertEqual(len(commands), 12)
        self.assertEqual([one for one in commands if f'LR"({one})"' not in test], [])

    def test_error_numbers(self):
        listed = {
            number.strip()
            for cells in rows(section(PAGE, "Windows error numbers"))
            for number in cells[0].split(",")
        }
        seen = set()
        for file in (REPOSITORY / "tests").rglob("golden/*.txt"):
            for line in re.findall(r"(?m)^ *4\|(.*)", file.read_text(encoding="utf-8")):
                # ICACLS' codes are the shell's own.
                if "Return Code" not in line and "still found" not in line:
                    seen |= set(re.findall(r"\((\d+)\)|[=:] (\d+)$", line))
        seen = {one or other for one, other in seen}
        self.assertGreater(len(seen), 4)
        # 0 is Wine's, whose shell has told the user in a box of its own.
        self.assertEqual(seen - listed - {"0"}, set())


unittest.main()
