"""The shipped string files as their tests see them: read strictly, line by line."""

import json
import pathlib
import sys
import unittest

TITLE = "KEY_UPDATE_TITLE"
FAILURE = "KEY_FAIL_COMMON_ERROR"
STILL_RUNNING = "KEY_FAIL_NEED_STOP_NHUPDATEMANAGER"
KEYS = {TITLE, FAILURE, STILL_RUNNING}

PRODUCT = "Nimba Hub"
PROGRAM = "NHUpdateManager"

# Files that have the same texts on purpose: one language under several codes.
SAME_TEXTS = [
    {"Default", "en"},
    {"es-419", "es-MX"},
    {"zh-TW", "zh-HK", "zh-MO", "zh-Hant", "zh-Hant-TW", "zh-Hant-HK", "zh-Hant-MO"},
]

SIMPLIFIED = {"zh"}
TRADITIONAL = SAME_TEXTS[2]

# A message box lays its text out from left to right, and where it breaks a line the words would be
# in the wrong order. So these texts have shorter lines, each with marks that give its direction. The
# box is measured without the marks: where a font gives them a width, the space behind them keeps the
# first letter of the widest line from being cut off.
RIGHT_TO_LEFT = {"ar", "he"}
EMBED_RIGHT_TO_LEFT = "\u202b"
END_EMBEDDING = "\u202c"
BEHIND_EMBEDDED_LINE = " "

# What ends a sentence; a full stop where nothing is said. Thai ends it with nothing.
SENTENCE_ENDS = {"ja": "。", "th": None, **{code: "。" for code in SIMPLIFIED | TRADITIONAL}}


def members_once(pairs):
    keys = [key for key, _ in pairs]
    if len(keys) != len(set(keys)):
        raise ValueError(f"a key stands twice in {keys}")
    return dict(pairs)


def config_folder():
    """The folder that the test was told of."""
    return pathlib.Path(sys.argv[-1])


def texts_of(path):
    return json.loads(path.read_bytes().decode("utf-8"), object_pairs_hook=members_once)


def without_embedding(line):
    own = line.removesuffix(END_EMBEDDING + BEHIND_EMBEDDED_LINE).removesuffix(END_EMBEDDING)
    return own.removeprefix(EMBED_RIGHT_TO_LEFT)


def lines_of(text):
    return [without_embedding(line) for line in text.split("\n")]


def for_each_file(check):
    """Makes a test of a check(self, code, path) of one file; it goes on after one that fails."""
    def test(self):
        paths = sorted(config_folder().glob("NHUpdateManager.*.json"))
        self.assertTrue(paths, f"no string files in {config_folder()}")
        for path in paths:
            code = path.name.removeprefix("NHUpdateManager.").removesuffix(".json")
            with self.subTest(code):
                check(self, code, path)
    return test


def for_each_text(check):
    """Makes a test of a check(self, code, key, text) of one text of one file."""
    @for_each_file
    def test(self, code, path):
        for key, text in texts_of(path).items():
            with self.subTest(code, key=key):
                check(self, code, key, text)
    return test


def run():
    unittest.main(argv=sys.argv[:-1])
