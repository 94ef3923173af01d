"""The form of the shipped string files, seen with a strict reader.

The program's own reader forgives much; translators' tools and other programs don't. What is
checked here also keeps the texts fit for a message box: string_files_test.py CONFIG_FOLDER
"""

import configparser
import json
import pathlib
import re
import sys
import unicodedata
import unittest

TITLE = "KEY_UPDATE_TITLE"
FAILURE = "KEY_FAIL_COMMON_ERROR"
STILL_RUNNING = "KEY_FAIL_NEED_STOP_NHUPDATEMANAGER"

PRODUCT = "Nimba Hub"
PROGRAM = "NHUpdateManager"

# A caption is cut off where the box ends, and a box of few words is a narrow one.
LONGEST = {TITLE: 40, FAILURE: 100, STILL_RUNNING: 150}

# Files that have the same texts on purpose: one language under several codes.
SAME_TEXTS = [
    {"Default", "en"},
    {"es-419", "es-MX"},
    {"zh-TW", "zh-HK", "zh-MO", "zh-Hant", "zh-Hant-TW", "zh-Hant-HK", "zh-Hant-MO"},
]

SIMPLIFIED = {"zh"}
TRADITIONAL = SAME_TEXTS[2]

# A message box runs from left to right. What it breaks itself it orders line by line, so these
# bring lines of their own, each with marks that give its direction.
RIGHT_TO_LEFT = {"ar", "he"}
LONGEST_RIGHT_TO_LEFT_LINE = 50

# The scripts of the letters, as Unicode's names begin; Latin where nothing is said.
SCRIPTS = {
    "ar": {"ARABIC"},
    "bg": {"CYRILLIC"},
    "el": {"GREEK"},
    "he": {"HEBREW"},
    "ja": {"CJK", "HIRAGANA"},
    "ko": {"HANGUL"},
    "ru": {"CYRILLIC"},
    "sr-Cyrl-RS": {"CYRILLIC"},
    "th": {"THAI"},
    "uk": {"CYRILLIC"},
    **{code: {"CJK"} for code in SIMPLIFIED | TRADITIONAL},
}

# What ends a sentence; a full stop where nothing is said. Thai ends it with nothing.
SENTENCE_ENDS = {"ja": "。", "th": None, **{code: "。" for code in SIMPLIFIED | TRADITIONAL}}

EMBED_RIGHT_TO_LEFT = "\u202b"
END_EMBEDDING = "\u202c"


def members_once(pairs):
    keys = [key for key, _ in pairs]
    if len(keys) != len(set(keys)):
        raise ValueError(f"a key stands twice in {keys}")
    return dict(pairs)


def texts_of(path):
    return json.loads(path.read_bytes().decode("utf-8"), object_pairs_hook=members_once)


def without_embedding(text):
    return text.removeprefix(EMBED_RIGHT_TO_LEFT).removesuffix(END_EMBEDDING)


def for_each_file(check):
    """Makes a test of a check(self, code, path) of one file; it goes on after one that fails."""
    def test(self):
        paths = sorted(self.config_folder.glob("NHUpdateManager.*.json"))
        self.assertTrue(paths, f"no string files in {self.config_folder}")
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


class StringFilesTest(unittest.TestCase):
    config_folder = None

    @for_each_file
    def test_each_is_a_strict_json_object_with_exactly_the_three_texts(self, _, path):
        texts = texts_of(path)
        self.assertEqual(set(texts), set(LONGEST))
        for text in texts.values():
            self.assertIsInstance(text, str)
            self.assertTrue(text.strip())

    @for_each_file
    def test_each_is_plain_utf8_that_ends_with_one_line_end(self, _, path):
        content = path.read_bytes()
        self.assertFalse(content.startswith(b"\xef\xbb\xbf"))
        self.assertNotIn(b"\r", content)
        self.assertRegex(content, rb"[^\n]\n\Z")

    @for_each_file
    def test_escapes_mean_the_same_to_the_programs_own_reader(self, _, path):
        content = path.read_text(encoding="utf-8")
        rest = re.sub(r'\\(?:["/nrt]|u[0-9A-Fa-f]{4})', "", content)
        self.assertNotIn("\\", rest)

    @for_each_text
    def test_texts_are_short_enough_for_a_message_box(self, _, key, text):
        self.assertLessEqual(len(text), LONGEST[key])

    @for_each_text
    def test_texts_name_the_product_and_the_program_to_close(self, _, key, text):
        self.assertIn(PRODUCT, text)
        # Once as the cause and once as what is to be closed; nowhere else.
        self.assertEqual(text.count(PROGRAM), 2 if key == STILL_RUNNING else 0)

    @for_each_text
    def test_texts_are_one_paragraph_except_from_right_to_left(self, code, _, text):
        # A path may follow on a line of its own, which must be the first other line.
        if code not in RIGHT_TO_LEFT:
            self.assertNotIn("\n", text)

    @for_each_text
    def test_texts_are_clean(self, _, __, text):
        self.assertEqual(text, unicodedata.normalize("NFC", text))
        for line in text.split("\n"):
            self.assertEqual(without_embedding(line), " ".join(without_embedding(line).split()))
            self.assertNotRegex(line, "[\ufffd\x00-\x1f'\"]")

    @for_each_text
    def test_texts_are_written_in_the_letters_of_their_language(self, code, _, text):
        own = text.replace(PRODUCT, "").replace(PROGRAM, "")
        scripts = {unicodedata.name(letter).split()[0] for letter in own if letter.isalpha()}
        self.assertTrue(scripts)
        self.assertLessEqual(scripts, SCRIPTS.get(code, {"LATIN"}))

    @for_each_text
    def test_chinese_texts_are_in_the_characters_of_their_file(self, code, _, text):
        if code in SIMPLIFIED:
            text.encode("gb2312")
        if code in TRADITIONAL:
            text.encode("big5")

    @for_each_text
    def test_sentences_end_as_sentences_and_titles_do_not(self, code, key, text):
        end = SENTENCE_ENDS.get(code, ".")
        last = without_embedding(text)[-1]
        if key == TITLE or end is None:
            self.assertIn(unicodedata.category(last)[0], "LM")
        else:
            self.assertEqual(last, end)

    @for_each_text
    def test_right_to_left_lines_say_so_and_no_others_do(self, code, _, text):
        marks = (EMBED_RIGHT_TO_LEFT, END_EMBEDDING) if code in RIGHT_TO_LEFT else ()
        for line in text.split("\n"):
            invisible = tuple(c for c in line if unicodedata.category(c) == "Cf")
            self.assertEqual(invisible, marks)
            self.assertEqual(line[:1] + line[-1:] if marks else "", "".join(marks))

    @for_each_text
    def test_right_to_left_lines_are_too_short_to_be_broken(self, code, _, text):
        for line in text.split("\n") if code in RIGHT_TO_LEFT else ():
            self.assertLessEqual(len(line), LONGEST_RIGHT_TO_LEFT_LINE)

    def test_only_files_meant_to_be_the_same_are(self):
        codes_of = {}
        for path in self.config_folder.glob("NHUpdateManager.*.json"):
            codes_of.setdefault(tuple(texts_of(path).values()), set()).add(path.name.split(".")[1])
        self.assertCountEqual([codes for codes in codes_of.values() if len(codes) > 1], SAME_TEXTS)

    def test_the_mapping_is_ascii_and_leads_to_files_that_exist(self):
        content = (self.config_folder / "SteamLanguageMapping.ini").read_bytes().decode("ascii")
        mapping = configparser.ConfigParser(interpolation=None)
        mapping.read_string(content)
        self.assertEqual(mapping.sections(), ["Language"])
        for name, code in mapping["Language"].items():
            with self.subTest(name):
                self.assertTrue((self.config_folder / f"NHUpdateManager.{code}.json").exists())


if __name__ == "__main__":
    StringFilesTest.config_folder = pathlib.Path(sys.argv.pop())
    unittest.main()
