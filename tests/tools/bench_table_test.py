"""The table of tools/bench, made from what two benchmarks could have printed:
bench_table_test.py REPOSITORY"""

import json
import pathlib
import shutil
import subprocess
import sys
import tempfile
import unittest

REPOSITORY = pathlib.Path(sys.argv.pop())


def row(target, own, rival):
    return json.dumps({"name": "copy", "what": "a copy", "rival": "a loop", "target": target,
                       "own_costs": own, "rival_costs": rival})


REACHED = row(1.1, [[20, 10], [30, 10], [60, 10]], [[20, 10], [20, 10], [20, 10]])
MISSED = row(1.1, [[20, 30], [20, 30]], [[10, 10], [10, 10]])
# Both times are shown as 1.10.
JUST_REACHED = row(1.1, [[1104, 1104], [1104, 1104]], [[1000, 1000], [1000, 1000]])
MEMORY = json.dumps({"name": "memory", "what": "a start", "rival": "an empty program",
                     "own_mib": [10, 30, 12], "rival_mib": [8, 8, 9]})
INSTRUCTIONS = {"name": "count", "what": "a long text", "rival": "a short one", "target": 1.1,
                "own_instructions": 55, "rival_instructions": 50}
NOT_MEASURABLE = row(0, [[20, 0], [20, 0]], [[10, 0], [10, 0]])


class BenchTableTest(unittest.TestCase):
    def setUp(self):
        # The tool writes into the page of its own tree.
        self.tree = pathlib.Path(self.enterContext(tempfile.TemporaryDirectory()))
        for file in ("tools/lib/bench_table", "docs/benchmarks.md"):
            (self.tree / file).parent.mkdir(parents=True, exist_ok=True)
            shutil.copy(REPOSITORY / file, self.tree / file)
        self.page = self.tree / "docs/benchmarks.md"

    def run_tool(self, lines, *options):
        rows = self.tree / "rows"
        rows.write_text("\n".join(lines) + "\n", encoding="utf-8")
        return subprocess.run([self.tree / "tools/lib/bench_table", *options, rows],
                              capture_output=True, encoding="utf-8", check=False)

    def cells(self, line):
        printed = self.run_tool([line])
        self.assertEqual(printed.returncode, 0, printed.stderr)
        return [cell.strip() for cell in printed.stdout.splitlines()[2].split("|")[1:-1]]

    def test_shows_the_middle_and_the_quarters_of_the_pairs(self):
        self.assertEqual(self.cells(REACHED), ["a copy", "a loop", "1.50 (1.25–2.25)",
                                               "1.00 (1.00–1.00)", "30.0", "20.0", "1.1", "3"])

    def test_shows_a_single_pair_without_quarters(self):
        self.assertEqual(self.cells(row(0, [[30, 20]], [[20, 10]]))[2:4], ["1.50", "2.00"])

    def test_says_when_neither_time_has_reached_the_target(self):
        self.assertEqual(self.cells(MISSED)[6], "1.1, missed")
        self.assertEqual(self.cells(JUST_REACHED)[6], "1.1")

    def test_shows_no_ratio_of_times_that_are_too_short(self):
        self.assertEqual(self.cells(NOT_MEASURABLE)[2:4], ["2.00 (2.00–2.00)", "—"])

    def test_shows_memory_in_a_table_of_its_own(self):
        self.assertEqual(self.cells(MEMORY),
                         ["a start", "an empty program", "12.0", "8.0", "1.50", "3"])

        printed = self.run_tool([MEMORY, REACHED]).stdout
        self.assertEqual([line[:10] for line in printed.splitlines()],
                         ["| what | r", "|---|---|-", "| a copy |", "",
                          "| what | r", "|---|---|-", "| a start "])

    def test_shows_instructions_in_a_table_of_their_own(self):
        self.assertEqual(self.cells(json.dumps(INSTRUCTIONS)),
                         ["a long text", "a short one", "1.10", "55.0", "50.0", "1.1"])
        self.assertEqual(self.cells(json.dumps({**INSTRUCTIONS, "own_instructions": 56}))[5],
                         "1.1, missed")

        printed = self.run_tool([MEMORY, json.dumps(INSTRUCTIONS), REACHED]).stdout
        self.assertEqual([line.partition(" | ")[0] for line in printed.splitlines()
                          if not line.startswith(("|---", "| what"))],
                         ["| a copy", "", "| a long text", "", "| a start"])

    def test_replaces_the_table_of_the_page_and_nothing_else(self):
        begin, end = "<!-- written by tools/bench --write -->\n", "<!-- end -->\n"
        before = self.page.read_text(encoding="utf-8")
        for line in (MISSED, REACHED):
            written = self.run_tool([line], "--write")
            self.assertEqual(written.returncode, 0, written.stderr)
        after = self.page.read_text(encoding="utf-8")

        self.assertEqual(after, before.partition(begin)[0] + begin + written.stdout + end
                         + before.partition(end)[2])

    def test_refuses_a_page_without_a_place_for_it(self):
        self.page.write_text("# Benchmarks\n", encoding="utf-8")
        self.assertNotEqual(self.run_tool([REACHED], "--write").returncode, 0)
        self.assertEqual(self.page.read_text(encoding="utf-8"), "# Benchmarks\n")


unittest.main()
