"""What came of each fault: a line in build/mutants/results.txt."""

from test_run import Outcome

CAUGHT = ("failed", "timed out")


def result_line(fault, outcome):
    return f"{fault.id}\t{outcome.result}\t{outcome.detail}\t{fault.key()}\n"


def caught_before(results_path, chosen):
    """The outcomes of those that the last run says were caught, by their ids. A fault whose lines
    or whose place in the file have changed since counts as another."""
    if not results_path.exists():
        return {}
    ids = {(fault.id, fault.key()) for fault in chosen}
    outcomes = {}
    for line in results_path.read_text(encoding="utf-8").splitlines():
        fault_id, result, detail, key = line.split("\t")
        if result in CAUGHT and (fault_id, key) in ids:
            outcomes[fault_id] = Outcome(result, detail)
    return outcomes
