"""The form of the shipped string files, seen with a strict reader.

The program's own reader forgives much; translators' tools and other programs don't. What is
checked here also keeps the texts fit for a message box: string_files_test.py CONFIG_FOLDER
"""

import configparser
import re
import unicodedata
import unittest

from string_files import (
    BEHIND_EMBEDDED_LINE,
    EMBED_RIGHT_TO_LEFT,
    END_EMBEDDING,
    KEYS,
    PRODUCT,
    PROGRAM,
    RIGHT_TO_LEFT,
    SIMPLIFIED,
    TITLE,
    TRADITIONAL,
    config_folder,
    for_each_file,
    for_each_text,
    lines_of,
    run,
    texts_of,
    without_embedding,
)

# A caption that is wider than its box is cut off. A line of a message is broken by the box, which
# costs height, and from right to left the order of the words. The program's name is wide.
LONGEST_TITLE = 40
LONGEST_LINE = 75
LONGEST_RIGHT_TO_LEFT_LINE = 48
LONGEST_RIGHT_TO_LEFT_LINE_WITH_PROGRAM = 42

# The scripts of the letters, as Unicode's names begin; Latin where nothing is said.
SCRIPTS = {
    "ar": {"ARABIC"},
    "bg": {"CYRILLIC"},
    "el": {"GREEK"},
    "he": {"HEBREW"},
    "ja": {"CJK", "HIRAGANA", "KATAKANA", "KATAKANA-HIRAGANA"},
    "ko": {"HANGUL"},
    "ru": {"CYRILLIC"},
    "sr-Cyrl-RS": {"CYRILLIC"},
    "th": {"THAI"},
    "uk": {"CYRILLIC"},
    **{code: {"CJK"} for code in SIMPLIFIED | TRADITIONAL},
}


class StringFilesTest(unittest.TestCase):
    @for_each_file
    def test_each_is_a_strict_json_object_with_exactly_the_three_texts(self, _, path):
        texts = texts_of(path)
        self.assertEqual(set(texts), KEYS)
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
    def test_lines_are_short_enough_for_a_message_box(self, code, key, text):
        for line in lines_of(text):
            longest = LONGEST_TITLE if key == TITLE else LONGEST_LINE
            if code in RIGHT_TO_LEFT and key != TITLE:
                longest = LONGEST_RIGHT_TO_LEFT_LINE
                if PROGRAM in line:
                    longest = LONGEST_RIGHT_TO_LEFT_LINE_WITH_PROGRAM
            self.assertLessEqual(len(line), longest, line)

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
    def test_right_to_left_lines_say_so_and_no_others_do(self, code, key, text):
        begin, end = (EMBED_RIGHT_TO_LEFT, END_EMBEDDING) if code in RIGHT_TO_LEFT else ("", "")
        behind = BEHIND_EMBEDDED_LINE if code in RIGHT_TO_LEFT and key != TITLE else ""
        for line in text.split("\n"):
            self.assertEqual(line, begin + without_embedding(line) + end + behind)
            invisible = "".join(c for c in line if unicodedata.category(c) == "Cf")
            self.assertEqual(invisible, begin + end)

    def test_the_mapping_is_ascii_and_leads_to_files_that_exist(self):
        content = (config_folder() / "SteamLanguageMapping.ini").read_bytes().decode("ascii")
        mapping = configparser.ConfigParser(interpolation=None)
        mapping.read_string(content)
        self.assertEqual(mapping.sections(), ["Language"])
        for name, code in mapping["Language"].items():
            with self.subTest(name):
                self.assertTrue((config_folder() / f"NHUpdateManager.{code}.json").exists())


if __name__ == "__main__":
    run()
