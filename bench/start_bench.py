#!/usr/bin/env python3
"""How long the program takes to start and to end: start_bench.py WINE PROGRAMS PRODUCT PAIRS [NAME...]

PROGRAMS is the folder with the benchmarks' executables, PRODUCT one that holds NHUpdateManager as on a
user's disk. Prints rows as the other benchmarks do (bench/support/pairs.h)."""
import json
import os
import sys
import time

sys.dont_write_bytecode = True

from wine_run import WITH_COM, usage_of  # noqa: E402

STARTS = 20  # of each in a pair

wine, programs, product = sys.argv[1:4]
pairs = int(sys.argv[4])
wanted = sys.argv[5:]
server_time = os.environ["NHUPDATE_SERVER_TIME"]

manager = f"{product}/NHUpdateManager/NHUpdateManager.exe"
same_imports = f"{programs}/same_imports.exe"
empty = f"{programs}/empty.exe"

# Name, what, rival, target, own command, its exit code, rival command.
ROWS = [
    ("start", "start without a switch", WITH_COM, 1.05, [manager], 0, [same_imports, "com"]),
    ("start_imports", "start without a switch", "an empty program with the same imports", 0,
     [manager], 0, [same_imports]),
    ("start_empty", "start without a switch", "an empty program", 0, [manager], 0, [empty]),
    ("start_download", "-download without an updater, with its log", WITH_COM, 0,
     [manager, "-download"], 14, [same_imports, "com"]),
]


def server_ms():
    with open(server_time, encoding="ascii") as file:
        return int(file.read().split()[0]) / 1e6


def measure(command, exit_code):
    """Wall and processor time for one start, in ms."""
    processor_start = server_ms()
    start = time.perf_counter()
    processor = 0.0
    for _ in range(STARTS):
        usage = usage_of([wine, *command], exit_code)
        processor += usage.ru_utime + usage.ru_stime
    wall = time.perf_counter() - start
    processor_ms = processor * 1e3 + server_ms() - processor_start
    return [wall * 1e3 / STARTS, processor_ms / STARTS]


def compare(name, what, rival_name, target, own, own_exit_code, rival):
    costs = {"own": [], "rival": []}
    for pair in range(pairs + 1):
        turns = [("own", own, own_exit_code), ("rival", rival, 0)]
        for side, command, exit_code in turns if pair % 2 == 0 else reversed(turns):
            cost = measure(command, exit_code)
            if pair > 0:
                costs[side].append(cost)
    print(json.dumps({"name": name, "what": what, "rival": rival_name, "target": target,
                      "own_costs": costs["own"], "rival_costs": costs["rival"]}), flush=True)


for row in ROWS:
    if not wanted or any(part in row[0] for part in wanted):
        compare(*row)
