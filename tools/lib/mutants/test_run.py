"""Running a test executable with a fault in it."""

import os
import re
import shutil
import signal
import subprocess
import time

from planted_tree import say

# The first only repeats for minutes what others do; the second looks at the package.
LEFT_OUT = ("log_library_cycle_tests", "shipped_tests")

_FAILED = re.compile(r"^\[  FAILED  \] ([\w/.]+)", re.MULTILINE)
_PASSED = re.compile(r"^\[       OK \] ([\w/.]+) \((\d+) ms\)", re.MULTILINE)
_QUICK_MS = 250
_SLOW_SECONDS = 20
_FENCE = 97
_BROKEN_OFF = -1


class Outcome:
    def __init__(self, result, detail=""):
        self.result = result  # passed, failed, timed out
        self.detail = detail


class Lane:
    """A Wine prefix of its own in which one executable runs at a time."""

    def __init__(self, tree, number):
        self.tree = tree
        self.folder = tree.root / "build" / "mutants" / f"wine-{number}"
        self.environment = dict(os.environ, NHUPDATE_LANE="unit", NHUPDATE_WINE_FOLDER=str(self.folder))

    def run(self, name, arguments, limit, **variables):
        """Returns the exit code and the output; no code when the time was up."""
        command = [self.tree.folder / "tools/lib/run_in_wine", self.tree.executable(name), *arguments]
        output = self.folder.with_suffix(".output")
        with open(output, "wb") as file:
            process = subprocess.Popen(
                command, cwd=self.tree.build_folder, stdin=subprocess.DEVNULL, stdout=file,
                stderr=subprocess.STDOUT, env={**self.environment, **variables}, start_new_session=True,
            )  # fmt: skip
            try:
                code = process.wait(limit)
            except subprocess.TimeoutExpired:
                os.killpg(process.pid, signal.SIGKILL)
                process.wait()
                code = None
        if code not in (0, 1):
            self.stop()  # and with it the processes that the tests have left
        text = output.read_text(encoding="utf-8", errors="replace")
        # Whatever a process that broke off says of itself.
        return (_BROKEN_OFF if code == 0 and "[  PASSED  ]" not in text else code), text

    def stop(self):
        if (self.folder / "unit").exists():
            environment = dict(os.environ, WINEPREFIX=str(self.folder / "unit"))
            for argument in ("-k", "-w"):
                subprocess.run(["/usr/lib/wine/wineserver64", argument], env=environment)


    def remove(self):
        """What it takes to make it again is nothing beside a run."""
        self.stop()
        shutil.rmtree(self.folder, ignore_errors=True)


class Suite:
    """The executables and what is known of them when nothing is planted."""

    def __init__(self, tree, names):
        self.tree = tree
        self.folders = {
            name: folder
            for name, folder in tree.test_executables().items()
            if name not in LEFT_OUT and (not names or name in names)
        }
        self.seconds = {}
        self.parts = {}  # the filters with which the executable is run, one after the other
        self.places = {}  # that its tests come by

    def measure(self, lane, name):
        """Runs the executable without a fault. Returns what is wrong with that."""
        places = lane.folder.with_suffix(".places")
        places.unlink(missing_ok=True)
        begin = time.monotonic()
        code, output = lane.run(name, [], 900, NHUPDATE_PLACES=f"Z:{places}".replace("/", "\\"))
        self.seconds[name] = time.monotonic() - begin
        if code != 0:
            return f"{name} ends with {code}:\n" + "\n".join(output.splitlines()[-30:])
        self.places[name] = set(map(int, places.read_text().split())) if places.exists() else set()
        self.parts[name] = self._parts(_PASSED.findall(output))
        return ""

    def _parts(self, tests):
        """The quick ones come first."""
        slow = [name for name, milliseconds in tests if int(milliseconds) >= _QUICK_MS]
        seconds = sum(int(milliseconds) for _, milliseconds in tests) / 1000
        quick_seconds = seconds - sum(int(ms) for _, ms in tests if int(ms) >= _QUICK_MS) / 1000
        if not slow or len(slow) == len(tests) or seconds < 3:
            return [("*", seconds)]
        return [("-" + ":".join(slow), quick_seconds), (":".join(slow), seconds - quick_seconds)]

    STAGES = 3

    def order_for(self, fault, stage):
        """Those for its folder first, then the others, at last those that take long. What doesn't
        come by the place can't notice."""
        names = []
        for name, folder in self.folders.items():
            is_slow = self.seconds[name] > _SLOW_SECONDS
            own_stage = 0 if folder == fault.folder else 2 if is_slow else 1
            if own_stage == stage and (not fault.number or fault.number in self.places[name]):
                names.append(name)
        return sorted(names, key=self.seconds.get)


def run_with_fault(lane, suite, fault, name):
    """Runs the tests of one executable. A failure that doesn't come again with the same test alone
    isn't the fault's."""
    variables = {"NHUPDATE_PLANTED": str(fault.number)} if fault.number else {}
    for tests, seconds in suite.parts[name]:
        left_out = []
        while True:
            filter_text = tests
            if left_out:
                filter_text += (":" if "-" in tests else "-") + ":".join(left_out)
            arguments = ["--gtest_fail_fast", "--gtest_brief=1", f"--gtest_filter={filter_text}"]
            code, output = lane.run(name, arguments, 20 + 5 * seconds, **variables)
            if code == 0:
                break
            if code is None:
                return Outcome("timed out", name)
            failed = _FAILED.search(output)
            if code == _FENCE:
                return Outcome("failed", f"{name}: the fence")
            if code != 1 or not failed:
                return Outcome("failed", f"{name}: ends with {code}")
            alone = [f"--gtest_filter={failed[1]}", "--gtest_brief=1"]
            if lane.run(name, alone, 20 + 5 * seconds, **variables)[0] != 0:
                return Outcome("failed", f"{name}: {failed[1]}")
            say(f"{fault.id}: {failed[1]} failed once and not again")
            left_out.append(failed[1])
    return Outcome("passed")
