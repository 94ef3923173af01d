#!/usr/bin/env python3
"""Tests of tools/mutants with a source that is made up for it: mutants_test.py ROOT"""

import os
import pathlib
import subprocess
import sys
import tempfile
import unittest

ROOT = pathlib.Path(sys.argv.pop(1)).resolve()
sys.path.insert(0, str(ROOT / "tools/lib/mutants"))

from candidates import choose, find_faults, read_sources  # noqa: E402
from planting import can_be_chosen_at_run_time, faults_at, give_numbers, planted_source  # noqa: E402
from results import caught_before, result_line  # noqa: E402
from test_run import Outcome  # noqa: E402

SOURCE = """#include <cstdio>

namespace {

constexpr int kLimit = 2;
constexpr wchar_t kWord[] = L"word";

enum class Answer { kYes, kNo };

Answer Judge(int number) {
  if (number < 0) {
    return Answer::kNo;
  }
  const int doubled = number * 2;
  return doubled > kLimit && number != 7 ? Answer::kYes : Answer::kNo;
}

void Show(int first, int second) {
  std::printf("%d", first);
  std::printf("-%d", second);
}

}  // namespace

int main() {
  const int small = 1;
  const int large = 3;
  Show(small, large);
  const struct {
    int value;
  } extremes[] = {{4}, {6}};
  for (const auto& extreme : extremes) {
    std::printf(" %d", extreme.value);
  }
  std::printf(" %d%d%d %ls", Judge(-1) == Answer::kYes, Judge(1) == Answer::kYes,
              Judge(2) == Answer::kYes, kWord);
  std::printf("a");
  std::printf("b");
  std::printf("c");
  return 0;
}
"""


class MutantsTest(unittest.TestCase):
    def setUp(self):
        self.scratch = tempfile.TemporaryDirectory(prefix="nhupdate")
        self.folder = pathlib.Path(self.scratch.name)
        (self.folder / "app").mkdir()
        (self.folder / "app/tiny.cpp").write_text(SOURCE, encoding="utf-8")

    def tearDown(self):
        self.scratch.cleanup()

    def faults(self):
        self.sources = read_sources(self.folder, ["app/tiny.cpp"])
        return find_faults(self.sources)["app/tiny.cpp"]

    def run_tool(self, equivalent, *arguments):
        subprocess.run(["git", "init", "-q"], cwd=self.folder, check=True)
        (self.folder / "tests/mutants").mkdir(parents=True, exist_ok=True)
        (self.folder / "tests/mutants/equivalent.txt").write_text(equivalent, encoding="utf-8")
        return subprocess.run(
            [sys.executable, "-B", ROOT / "tools/lib/mutants", "--source", self.folder, *arguments],
            capture_output=True,
            text=True,
        )

    def test_finds_the_faults_of_each_line(self):
        found = [f"{fault.id.removeprefix('app/tiny.cpp:')} {fault.plus}" for fault in self.faults()]

        for expected in (
            "5:number constexpr int kLimit = 3;",
            "5:number.2 constexpr int kLimit = 1;",
            '6:text constexpr wchar_t kWord[] = L"drow";',
            "11:comparison if (number <= 0) {",
            "11:guard if (false) {",
            "11:negation if (!(number < 0)) {",
            "12:result return Answer::kYes;",
            "14:number const int doubled = number * 3;",
            "15:branches return doubled > kLimit && number != 7 ? (Answer::kNo) : (Answer::kYes);",
            "15:logic return doubled > kLimit || number != 7 ? Answer::kYes : Answer::kNo;",
            '19:steps std::printf("-%d", second); std::printf("%d", first);',
            "20:drop ",
            "28:arguments Show(large, small);",
            "31:number } extremes[] = {{5}, {6}};",
        ):
            with self.subTest(expected):
                self.assertIn(expected, found)

    def test_chooses_the_same_faults_each_time_and_some_of_each_kind(self):
        faults = {"app/tiny.cpp": self.faults()}

        first = choose(faults, self.sources, 10)["app/tiny.cpp"]
        again = choose({"app/tiny.cpp": self.faults()}, self.sources, 10)["app/tiny.cpp"]

        self.assertEqual([fault.id for fault in first], [fault.id for fault in again])
        self.assertEqual(10, len(first))
        self.assertGreaterEqual(len({fault.kind for fault in first}), 8)

    def test_a_planted_program_has_the_fault_that_is_chosen_and_no_other(self):
        faults = [fault for fault in self.faults() if can_be_chosen_at_run_time(fault)]
        give_numbers(faults)
        text = planted_source("app/tiny.cpp", self.sources["app/tiny.cpp"], faults)
        planted = self.build(text, "-I", ROOT / "tools/lib/mutants")

        self.assertEqual(self.output(self.build(SOURCE)), self.output(planted))
        steps = [fault for fault in faults if fault.kind == "steps"]
        self.assertIs(steps[-2].unit.next, steps[-1].unit)  # a statement can belong to two pairs
        for fault in [*steps, *faults[::3]]:
            with self.subTest(fault.id):
                self.assertEqual(
                    self.output(self.build(fault.changed_source())),
                    self.output(planted, NHUPDATE_PLANTED=str(fault.number)),
                )

    def build(self, text, *arguments):
        program = self.folder / f"program{len(list(self.folder.iterdir()))}"
        source = program.with_suffix(".cpp")
        source.write_text(text, encoding="utf-8")
        subprocess.run(["g++", "-std=c++20", "-w", source, *arguments, "-o", program], check=True)
        return program

    def output(self, program, **variables):
        result = subprocess.run([program], capture_output=True, env={**os.environ, **variables})
        return result.returncode, result.stdout

    def test_the_line_of_an_error_leads_to_the_fault(self):
        faults = [fault for fault in self.faults() if fault.id.endswith(":11:comparison")]
        faults[0].number = 5
        text = planted_source("app/tiny.cpp", self.sources["app/tiny.cpp"], faults)
        lines = text.splitlines()
        line = next(number for number, line in enumerate(lines, start=1) if "<=" in line)

        self.assertEqual({5}, faults_at(text, line))
        self.assertEqual(set(), faults_at(text, 1))

    def test_what_was_caught_before_is_known_again_in_the_same_source(self):
        faults = self.faults()[:4]
        caught, late = faults[:2]
        results = self.folder / "results.txt"
        words = ("failed", "timed out", "passed", "rejected")
        lines = [result_line(fault, Outcome(word, "Name")) for fault, word in zip(faults, words)]
        results.write_text("".join(lines), encoding="utf-8")

        again = caught_before(results, faults)

        found = [(fault_id, outcome.result, outcome.detail) for fault_id, outcome in again.items()]
        self.assertEqual([(caught.id, "failed", "Name"), (late.id, "timed out", "Name")], found)
        caught.plus = "another line"
        self.assertEqual({late.id}, caught_before(results, faults).keys())
        self.assertEqual({}, caught_before(self.folder / "none.txt", faults))

    def test_an_equivalent_fault_is_named_with_its_reason(self):
        entry = "app/tiny.cpp number\n- const int small = 1;\n+ const int small = 2;\nwhy not\n"

        result = self.run_tool(entry, "--list", "--only", "*:26:*")

        self.assertIn("app/tiny.cpp:26:number\n", result.stdout)
        self.assertIn("  equivalent: why not\n", result.stdout)
        self.assertEqual(0, result.returncode)

    def test_an_equivalent_fault_that_there_is_not_is_an_error(self):
        entry = "app/tiny.cpp number\n- const int small = 1;\n+ const int small = 9;\nwhy not\n"

        result = self.run_tool(f"# a comment\n\n{entry}", "--list")

        self.assertIn("equivalent.txt:3: no fault of app/tiny.cpp is this", result.stdout)
        self.assertEqual(1, result.returncode)


unittest.main(verbosity=0)
