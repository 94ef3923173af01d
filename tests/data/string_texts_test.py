"""What the shipped texts tell, in all languages alike: string_texts_test.py CONFIG_FOLDER"""

import difflib
import re
import unicodedata
import unittest

from string_files import (
    FAILURE,
    PRODUCT,
    PROGRAM,
    SAME_TEXTS,
    SENTENCE_ENDS,
    SIMPLIFIED,
    STILL_RUNNING,
    TITLE,
    TRADITIONAL,
    config_folder,
    for_each_file,
    for_each_text,
    lines_of,
    run,
    texts_of,
)

# What the lines of a message tell, in every language in this order: that the update has failed;
# behind it, of the common failure, to close the product and to try again, to restart the computer,
# and what the path is that may follow; of the other, what still runs, and to restart and try again.
LINES = {TITLE: 1, FAILURE: 4, STILL_RUNNING: 3}
RESTART = 2

# Words of the English texts that other languages have as well.
ENGLISH_ELSEWHERE = {"a", "background", "be", "computer", "file", "in", "is", "later", "update"}

# The restart is told by the same words in both messages: so many letters in a row, more than lines
# that tell different things have in common by chance. Chinese needs few letters for it.
SHORTEST_RESTART = 10
SHORTEST_CHINESE_RESTART = 7

# Languages so near to each other that some sentences are the same, though not the whole texts.
NEAR = [{"id", "ms"}, {"pt", "pt-BR"}]

# Serbian, letter by letter, in the order of the Cyrillic alphabet.
SERBIAN_CYRILLIC = "а б в г д ђ е ж з и ј к л љ м н њ о п р с т ћ у ф х ц ч џ ш".split()
SERBIAN_LATIN = "a b v g d đ e ž z i j k l lj m n nj o p r s t ć u f h c č dž š".split()


def words_of(texts):
    own = " ".join(texts.values()).replace(PRODUCT, "").replace(PROGRAM, "")
    return set(re.findall(r"\w+", own.lower()))


def letters_in_common(left, right):
    """The length of the longest run of characters that both lines have, sentence ends aside."""
    left, right = (line.strip(".。").lower() for line in (left, right))
    match = difflib.SequenceMatcher(None, left, right, autojunk=False)
    return match.find_longest_match().size


def in_latin_letters(text):
    for cyrillic, latin in zip(SERBIAN_CYRILLIC, SERBIAN_LATIN, strict=True):
        text = text.replace(cyrillic, latin).replace(cyrillic.upper(), latin.capitalize())
    return text


def codes_by(parts_of):
    """Which files have each of the parts that parts_of(texts) takes from a file."""
    codes_of = {}
    for path in config_folder().glob("NHUpdateManager.*.json"):
        for part in parts_of(texts_of(path)):
            codes_of.setdefault(part, set()).add(path.name.split(".")[1])
    return codes_of


class StringTextsTest(unittest.TestCase):
    @for_each_text
    def test_each_sentence_is_a_line_and_each_language_has_the_same(self, code, key, text):
        end = SENTENCE_ENDS.get(code, ".")
        lines = lines_of(text)
        self.assertEqual(len(lines), LINES[key])
        for line in lines:
            if key == TITLE or end is None:
                self.assertNotRegex(line, r"[.。]")
                self.assertIn(unicodedata.category(line[-1])[0], "LM")
            else:
                self.assertEqual((line.count(end), line[-1]), (1, end))

    @for_each_file
    def test_messages_say_what_has_failed_what_to_close_and_what_runs(self, _, path):
        texts = texts_of(path)
        failure, still_running = lines_of(texts[FAILURE]), lines_of(texts[STILL_RUNNING])
        self.assertIn(PRODUCT, texts[TITLE])
        self.assertEqual([line.count(PRODUCT) for line in failure], [1, 1, 0, 0])
        self.assertEqual([line.count(PRODUCT) for line in still_running], [1, 0, 0])
        # It has no window, so nobody is asked to close it.
        self.assertEqual([line.count(PROGRAM) for line in still_running], [0, 1, 0])
        self.assertNotIn(PROGRAM, texts[TITLE] + texts[FAILURE])
        self.assertEqual(failure[0], still_running[0])

    @for_each_file
    def test_both_messages_tell_the_user_to_restart_the_computer(self, code, path):
        failure, still_running = (lines_of(texts_of(path)[key]) for key in (FAILURE, STILL_RUNNING))
        is_chinese = code in SIMPLIFIED | TRADITIONAL
        self.assertGreaterEqual(
            letters_in_common(failure[RESTART], still_running[RESTART]),
            SHORTEST_CHINESE_RESTART if is_chinese else SHORTEST_RESTART,
        )

    @for_each_file
    def test_no_english_words_are_left_in_other_languages(self, code, path):
        english = words_of(texts_of(config_folder() / "NHUpdateManager.en.json"))
        if code not in SAME_TEXTS[0]:
            self.assertEqual(words_of(texts_of(path)) & english - ENGLISH_ELSEWHERE, set())

    def test_only_files_meant_to_be_the_same_are(self):
        for key in (FAILURE, STILL_RUNNING):
            with self.subTest(key):
                codes = codes_by(lambda texts, key=key: [texts[key]]).values()
                self.assertCountEqual([same for same in codes if len(same) > 1], SAME_TEXTS)

    def test_no_sentence_is_copied_from_another_language(self):
        sentences = codes_by(
            lambda texts: {line for key in (FAILURE, STILL_RUNNING) for line in lines_of(texts[key])}
        )
        for sentence, codes in sentences.items():
            with self.subTest(sentence):
                alike = [{code} for code in codes] + SAME_TEXTS + NEAR
                self.assertTrue(any(codes <= group for group in alike), codes)

    def test_serbian_is_the_same_in_both_scripts(self):
        latin, cyrillic = (
            texts_of(config_folder() / f"NHUpdateManager.{code}.json")
            for code in ("sr", "sr-Cyrl-RS")
        )
        self.assertEqual({key: in_latin_letters(text) for key, text in cyrillic.items()}, latin)


if __name__ == "__main__":
    run()
