"""How a suite of tests is dealt out among lanes: list_suites_test.py REPOSITORY"""

import importlib.machinery
import importlib.util
import pathlib
import re
import sys
import types
import unittest

REPOSITORY = pathlib.Path(sys.argv.pop())

sys.path.insert(0, str(REPOSITORY / "tools/lib"))
_loader = importlib.machinery.SourceFileLoader(
    "list_suites", str(REPOSITORY / "tools/lib/list_suites"))
list_suites = importlib.util.module_from_spec(
    importlib.util.spec_from_loader(_loader.name, _loader))
_loader.exec_module(list_suites)


def tests_for(lanes, test_count):
    """Name and properties of each test that ctest gets to know."""
    executable = types.SimpleNamespace(
        lanes=lanes, prefix="", program="/programs/faults.exe", ring="unit", time_limit=60)
    tests = {}
    for line in list_suites.lines_for(executable, "FaultsTest", test_count):
        name = re.search(r"\[=\[(.*)\]=\]", line)[1]
        tests.setdefault(name, {}).update(re.findall(r'(\w+) "([^"]*)"', line))
    return {name: (test.get("RESOURCE_LOCK"), test.get("ENVIRONMENT")) for name, test in tests.items()}


class ListSuitesTest(unittest.TestCase):
    def test_a_suite_is_run_whole_in_its_only_lane(self):
        self.assertEqual(tests_for(["unit"], 9), {"FaultsTest": ("lane-unit", "NHUPDATE_LANE=unit")})

    def test_a_suite_is_run_without_a_lane_on_the_building_machine(self):
        self.assertEqual(tests_for([], 9), {"FaultsTest": (None, None)})

    def test_a_suite_of_several_lanes_is_dealt_out_whole(self):
        self.assertEqual(tests_for(["faults", "more_faults"], 2), {
            "FaultsTest (1 of 2)": (
                "lane-faults", "NHUPDATE_LANE=faults;GTEST_TOTAL_SHARDS=2;GTEST_SHARD_INDEX=0"),
            "FaultsTest (2 of 2)": (
                "lane-more_faults",
                "NHUPDATE_LANE=more_faults;GTEST_TOTAL_SHARDS=2;GTEST_SHARD_INDEX=1"),
        })

    def test_a_suite_of_fewer_tests_than_lanes_stays_whole(self):
        self.assertEqual(
            tests_for(["faults", "more_faults"], 1),
            {"FaultsTest": ("lane-faults", "NHUPDATE_LANE=faults")})


if __name__ == "__main__":
    unittest.main(argv=sys.argv)
