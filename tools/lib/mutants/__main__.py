"""tools/mutants: plants faults in the product's sources and tells which the unit tests don't see."""

import argparse
import fcntl
import fnmatch
import pathlib
import queue
import sys
import threading
import time

from candidates import FOLDERS, choose, find_faults, read_sources
from equivalents import read_equivalents, reasons_by_key
from planted_tree import PlantedTree, say
from results import CAUGHT, caught_before, result_line
from test_run import Lane, Outcome, Suite, run_with_fault

ROOT = pathlib.Path(__file__).resolve().parents[3]


def arguments():
    parser = argparse.ArgumentParser(
        prog="tools/mutants",
        description="Plants simple faults in the product's sources and tells which of them the unit"
        " tests don't see.",
    )
    parser.add_argument("--count", type=int, default=450, help="how many faults (%(default)s)")
    parser.add_argument("--folder", choices=FOLDERS, help="only those of this folder")
    parser.add_argument("--only", action="append", metavar="ID", help="only these; may hold * and ?")
    parser.add_argument("--again", action="store_true", help="try only what wasn't caught the last time")
    parser.add_argument("--list", action="store_true", help="say which there are, and plant none")
    parser.add_argument("--jobs", type=int, default=2, help="processes at once (%(default)s)")
    parser.add_argument("--source", type=pathlib.Path, default=ROOT, help=argparse.SUPPRESS)
    parser.add_argument("name", nargs="*", help="test executables; without one, those of all unit tests")
    return parser.parse_args()


def show(fault):
    print(f"{fault.id}\n  - {fault.minus}\n  + {fault.plus}")


def selected(options, faults, sources):
    if options.only:
        everything = [fault for of_file in faults.values() for fault in of_file]
        return [f for f in everything if any(fnmatch.fnmatch(f.id, only) for only in options.only)]
    chosen = [fault for of_file in choose(faults, sources, options.count).values() for fault in of_file]
    return [fault for fault in chosen if not options.folder or fault.folder == options.folder]


class Run:
    def __init__(self, tree, suite, lanes, results_path):
        self.tree = tree
        self.suite = suite
        self.lanes = lanes
        self.results = {}
        self.results_file = open(results_path, "w", encoding="utf-8")
        self.lock = threading.Lock()

    def in_lanes(self, work, items):
        """Does the work on all items, in each lane one at a time."""
        waiting = queue.SimpleQueue()
        for item in items:
            waiting.put(item)
        failures = []

        def worker(lane):
            try:
                while True:
                    work(lane, waiting.get_nowait())
            except queue.Empty:
                pass
            except BaseException as failure:  # told by the main thread
                failures.append(failure)

        threads = [threading.Thread(target=worker, args=(lane,), daemon=True) for lane in self.lanes]
        for thread in threads:
            thread.start()
        for thread in threads:
            thread.join()
        if failures:
            raise failures[0]

    def measure(self):
        wrong = []
        slowest_first = sorted(self.suite.folders, key=lambda name: name not in ("faults_tests", "log_library_tests"))
        self.in_lanes(lambda lane, name: wrong.append(self.suite.measure(lane, name)), slowest_first)
        wrong = [text for text in wrong if text]
        if wrong:
            raise SystemExit("Without a fault the tests are to pass:\n" + "\n".join(wrong))

    def settle(self, fault, outcome):
        with self.lock:
            self.results[fault.id] = outcome
            self.results_file.write(result_line(fault, outcome))
            self.results_file.flush()

    def try_all(self, faults):
        """First each with the tests for its folder, then what is left with the others, and at last
        with those that take long."""
        for stage in range(self.suite.STAGES):
            self.in_lanes(lambda lane, fault: self.try_fault(lane, fault, stage), faults)
            faults = [fault for fault in faults if fault.id not in self.results]
            say(f"{len(faults)} faults are left")
        for fault in faults:
            self.settle(fault, Outcome("passed"))

    def try_fault(self, lane, fault, stage):
        for name in self.suite.order_for(fault, stage):
            outcome = run_with_fault(lane, self.suite, fault, name)
            if outcome.result != "passed":
                self.settle(fault, outcome)
                return
        with self.lock:
            say(f"stage {stage + 1} passed: {fault.id}")

    def try_single(self, lane, fault):
        self.tree.put(fault)
        own = [name for name, folder in self.suite.folders.items() if folder == fault.folder]
        others = [name for name in self.suite.folders if name not in own]
        outcome = Outcome("passed")
        for names in (own, [n for n in others if self.suite.seconds[n] < 20]):
            errors = self.tree.build(names)
            if errors:
                is_rejected = self.tree.is_fault_itself_rejected(fault, errors)
                outcome = Outcome("rejected" if is_rejected else "failed", "the compiler")
                break
            for name in sorted(names, key=self.suite.seconds.get):
                outcome = run_with_fault(lane, self.suite, fault, name)
                if outcome.result != "passed":
                    break
            if outcome.result != "passed":
                break
            if names is own and (check := self.tree.failed_compiler_check()):
                outcome = Outcome("failed", check)
                break
        self.tree.put_back(fault)
        self.settle(fault, outcome)


def report(chosen, results, reasons):
    """Returns how many are not explained."""
    print(f"{'':12}{'planted':>8}{'caught':>8}{'timed out':>11}{'equivalent':>12}{'survived':>10}{'caught of all':>15}")
    survivors = []
    for folder in (*FOLDERS, "all"):
        own = [fault for fault in chosen if folder in (fault.folder, "all")]
        own = [fault for fault in own if results[fault.id].result != "rejected"]
        if not own:
            continue
        caught = sum(results[fault.id].result in CAUGHT for fault in own)
        late = sum(results[fault.id].result == "timed out" for fault in own)
        equivalent = sum(fault.key() in reasons and results[fault.id].result not in CAUGHT for fault in own)
        share = f"{100 * caught / len(own):.1f} %"
        print(f"{folder:12}{len(own):8}{caught:8}{late:11}{equivalent:12}{len(own) - caught - equivalent:10}{share:>15}")
    for fault in chosen:
        if results[fault.id].result == "passed" and fault.key() not in reasons:
            survivors.append(fault)
    if survivors:
        print("\nSurvived:")
    for fault in survivors:
        show(fault)
    explained = [f for f in chosen if f.key() in reasons and results[f.id].result in CAUGHT]
    for fault in explained:
        print(f"{fault.id} is said to be equivalent, but was caught: {results[fault.id].detail}")
    return len(survivors) + len(explained)


def main():
    options = arguments()
    tree = PlantedTree(options.source, options.jobs)
    sources = read_sources(options.source, tree.product_files())
    faults = find_faults(sources)
    equivalent_file = options.source / "tests/mutants/equivalent.txt"
    reasons = reasons_by_key(read_equivalents(equivalent_file.read_text(encoding="utf-8")), faults)
    chosen = selected(options, faults, sources)
    if options.list:
        for fault in chosen:
            show(fault)
            if fault.key() in reasons:
                print(f"  equivalent: {reasons[fault.key()]}")
        return 0
    if not chosen:
        raise SystemExit("There is no such fault.")

    # Two runs in one clone would end each other's lanes.
    tree.folder.mkdir(parents=True, exist_ok=True)
    lock = open(tree.folder.parent / "lock", "w", encoding="utf-8")
    try:
        fcntl.flock(lock, fcntl.LOCK_EX | fcntl.LOCK_NB)
    except BlockingIOError:
        raise SystemExit("Faults are being planted here already.") from None

    begin = time.monotonic()
    single, rejected = tree.plant(chosen, sources, options.name)
    say(f"Built after {time.monotonic() - begin:.0f} s")
    lanes = [Lane(tree, number) for number in range(1, options.jobs + 1)]
    results_path = tree.folder.parent / "results.txt"
    before = caught_before(results_path, chosen) if options.again else {}
    run = Run(tree, Suite(tree, options.name), lanes, results_path)
    try:
        for fault in chosen:
            if fault.id in before:
                run.settle(fault, before[fault.id])
        run.measure()
        say(f"All tests pass without a fault, after {time.monotonic() - begin:.0f} s")
        for fault in rejected:
            run.settle(fault, Outcome("rejected"))
        # What is explained is only tried when it is asked for.
        for fault in chosen:
            if fault.key() in reasons and not options.only and fault.id not in run.results:
                run.settle(fault, Outcome("equivalent"))
        to_do = [fault for fault in chosen if fault.id not in run.results and fault not in single]
        run.try_all(to_do)
        say(f"Tried what is chosen at run time, after {time.monotonic() - begin:.0f} s")
        for fault in single:
            if fault.id not in run.results:
                run.try_single(lanes[0], fault)
    finally:
        for lane in lanes:
            lane.remove()
    unexplained = report(chosen, run.results, reasons)
    count = sum(outcome.result == "rejected" for outcome in run.results.values())
    if before:
        print(f"\n{len(before)} of them were caught in an earlier run and not tried again.")
    print(f"\n{len(single)} of them were built one by one; {count} more don't compile and don't count."
          f" {time.monotonic() - begin:.0f} s, all results in build/mutants/results.txt.")
    return 1 if unexplained else 0


sys.exit(main())
